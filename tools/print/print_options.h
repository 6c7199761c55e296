// What the command line says about a print.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/pipeline/stage.h"
#include "tools/print/dots.h"

namespace vrk::tool {

struct print_options {
  // Tone of the picture: the pre-processors.
  std::vector<std::int16_t> balance{};   // R, G, B
  std::vector<std::int16_t> balance2{};  // a, b
  int lift = 0, contrast = 0;
  std::vector<std::string> curves{};  // [r=|g=|b=]CURVE, see tools/curve_argument.h
  pixel_layout layout{};

  // Inks: the converters.
  std::optional<unsigned> inks{};  // 1, 4 or 6; 4, or what the colour table makes, unless given
  bool split = false;              // six inks of four, by post-processing
  std::string csc1{}, csc2{};      // files

  // Tone of the inks: post-processing.
  std::vector<std::string> plane_curves{};  // [PLANE=]CURVE

  // Dots.
  std::string halftone{};  // "ed" or "dither"; the one that the other options belong to unless given
  std::optional<unsigned> levels{};
  std::string filter{}, modulation{};
  std::optional<unsigned> precision{};  // 8, 10 or 16: working precision of error diffusion, or as width16
  std::optional<dot_scale> cells{};     // dots of a pixel
  std::string matrix{};
  std::string edpr{}, edtb{}, dith{};  // files

  std::vector<std::string> blobs{};  // FILE[:selector=value,...]
  bool width16 = false;              // 16-bit samples all the way
  unsigned threads = 0;              // as many as the machine has cores

  unsigned sample_bits() const { return width16 || precision == 16U ? 16 : 8; }
};

}  // namespace vrk::tool
