#include "bench/paired/library.h"

#include <dlfcn.h>

#include <stdexcept>

namespace vrk::bench {
namespace {

template <class Call>
void find(void* loaded, const char* name, Call& call) {
  call = reinterpret_cast<Call>(dlsym(loaded, name));
  if (call == nullptr) throw std::runtime_error(dlerror());
}

}  // namespace

library load_library(const std::string& path) {
  void* const loaded = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (loaded == nullptr) throw std::runtime_error(dlerror());
  library calls;
  calls.linked = false;
  find(loaded, "vrk_create_preproc", calls.create_preproc);
  find(loaded, "vrk_xform_preproc", calls.xform_preproc);
  find(loaded, "vrk_create_csc1", calls.create_csc1);
  find(loaded, "vrk_set_csc1_rgb", calls.set_csc1_rgb);
  find(loaded, "vrk_xform_csc1", calls.xform_csc1);
  find(loaded, "vrk_create_csc2", calls.create_csc2);
  find(loaded, "vrk_set_csc2_rgb", calls.set_csc2_rgb);
  find(loaded, "vrk_xform_csc2", calls.xform_csc2);
  find(loaded, "vrk_create_postproc", calls.create_postproc);
  find(loaded, "vrk_xform_postproc", calls.xform_postproc);
  find(loaded, "vrk_create_ed", calls.create_ed);
  find(loaded, "vrk_query_ed_info", calls.query_ed_info);
  find(loaded, "vrk_start_ed_block", calls.start_ed_block);
  find(loaded, "vrk_exec_edx", calls.exec_edx);
  find(loaded, "vrk_create_dither", calls.create_dither);
  find(loaded, "vrk_query_dither_info", calls.query_dither_info);
  find(loaded, "vrk_start_dither_block", calls.start_dither_block);
  find(loaded, "vrk_exec_ditherx", calls.exec_ditherx);
  return calls;
}

}  // namespace vrk::bench
