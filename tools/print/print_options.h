// What the command line says about a print.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/color/profile_link.h"
#include "tools/image/window.h"
#include "tools/pipeline/halftone.h"

namespace vrk::tool {

// Tone of the picture: the pre-processors. The steps are those of the library; none or 0 changes nothing.
struct tone_options {
  std::vector<std::int16_t> balance{};   // R, G, B
  std::vector<std::int16_t> balance2{};  // a, b
  int lift = 0, contrast = 0;
  std::vector<std::string> curves{};  // [r=|g=|b=]CURVE, see curve_argument.h
};

// Inks: the second converter and post-processing.
struct ink_options {
  std::optional<unsigned> count{};          // 1, 4 or 6; by default what the colour table makes, else 4
  bool split = false;                       // six inks of four, by post-processing
  std::vector<std::string> plane_curves{};  // [PLANE=]CURVE
  profile_link profile{};                   // no path: none; its ink limit is also for pictures in C, M, Y, K

  unsigned planes() const { return split ? 6 : count.value_or(4); }     // asked for
  unsigned converted() const { return split ? 4 : count.value_or(4); }  // by the second converter
};

// Dots: the halftone. What is empty has its default.
struct dot_options {
  std::string halftone{};  // "ed" or "dither"; by default the one that the other options belong to
  std::optional<unsigned> levels{};
  std::string filter{}, modulation{};
  std::optional<unsigned> precision{};  // 8, 10 or 16: working precision of error diffusion, or as width16
  std::optional<dot_scale> cells{};
  std::string matrix{};

  bool dithers(bool has_dither_table) const {
    return halftone.empty() ? has_dither_table || !matrix.empty() : halftone == "dither";
  }
};

// Paths of table files; empty where none is given.
struct table_files {
  std::string csc1{}, csc2{}, edpr{}, edtb{}, dith{};
  std::vector<std::string> blobs{};  // FILE[:selector=value,...], see blob_argument.h
  std::vector<std::string> media{};  // TYPE=BLOB, for pages whose header names this type of media
};

// Pictures of the print.
struct picture_options {
  bool drawn = true;
  unsigned preview_size = 1600;                // pixels of the longer side of preview.png, at most
  std::optional<pixel_place> detail_centre{};  // of detail.png, in pixels of the page; by default the page's
};

// What the planes are written as: see plane_files.h.
enum class print_format { planes, tiff, cups, pwg };

constexpr bool is_raster_stream(print_format format) {
  return format == print_format::cups || format == print_format::pwg;
}

// Colours of a CUPS raster: dot by dot, line by line, or plane by plane.
enum class plane_order { chunky, banded, planar };

struct print_options {
  tone_options tone{};
  ink_options inks{};
  dot_options dots{};
  table_files files{};
  print_format format{};
  std::optional<plane_order> order{};  // of cups; chunky unless given
  bool one_file = false;               // the planes must not be in several files
  picture_options pictures{};
  pixel_layout layout{};  // of RGB between stages
  bool width16 = false;   // 16-bit samples from the first stage to the last
  unsigned threads = 0;   // 0: as many as the machine has cores
  bool silent = false;    // no progress bar

  ed_precision precision() const {
    if (width16 || dots.precision == 16U) return ed_precision::samples16;
    return dots.precision == 8U ? ed_precision::bits8 : ed_precision::bits10;
  }
};

}  // namespace vrk::tool
