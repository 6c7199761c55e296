// The library as a table of its calls: the one that is linked, or another build of it, loaded by name.
#pragma once

#include <string>

#include "vrk.h"

namespace vrk::bench {

struct library {
  bool linked = true;  // its handles' rows can be chosen

  decltype(&vrk_create_preproc) create_preproc = vrk_create_preproc;
  decltype(&vrk_xform_preproc) xform_preproc = vrk_xform_preproc;
  decltype(&vrk_create_csc1) create_csc1 = vrk_create_csc1;
  decltype(&vrk_set_csc1_rgb) set_csc1_rgb = vrk_set_csc1_rgb;
  decltype(&vrk_xform_csc1) xform_csc1 = vrk_xform_csc1;
  decltype(&vrk_create_csc2) create_csc2 = vrk_create_csc2;
  decltype(&vrk_set_csc2_rgb) set_csc2_rgb = vrk_set_csc2_rgb;
  decltype(&vrk_xform_csc2) xform_csc2 = vrk_xform_csc2;
  decltype(&vrk_create_postproc) create_postproc = vrk_create_postproc;
  decltype(&vrk_xform_postproc) xform_postproc = vrk_xform_postproc;
  decltype(&vrk_create_ed) create_ed = vrk_create_ed;
  decltype(&vrk_query_ed_info) query_ed_info = vrk_query_ed_info;
  decltype(&vrk_start_ed_block) start_ed_block = vrk_start_ed_block;
  decltype(&vrk_exec_edx) exec_edx = vrk_exec_edx;
  decltype(&vrk_create_dither) create_dither = vrk_create_dither;
  decltype(&vrk_query_dither_info) query_dither_info = vrk_query_dither_info;
  decltype(&vrk_start_dither_block) start_dither_block = vrk_start_dither_block;
  decltype(&vrk_exec_ditherx) exec_ditherx = vrk_exec_ditherx;
};

// It stays loaded. Throws std::runtime_error where it cannot be loaded or lacks a call.
library load_library(const std::string& path);

}  // namespace vrk::bench
