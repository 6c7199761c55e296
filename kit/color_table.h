// The colour tables "csc1" (RGB to three samples) and "csc2" (RGB to four or six inks).
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "kit/bytes.h"

namespace vrk::kit {

enum class grid_encoding : std::uint8_t {
  raw16 = 0,
  packed12 = 1,
  packed10 = 2,
  raw8 = 3,
  delta10 = 6,  // "csc2" only
  delta8 = 7,   // "csc1" only
};

// Samples of a colour at points^3 places of the RGB cube. Point (i, j, k) on the R, G, B axes is number
// (i * points + j) * points + k; its samples lie side by side, on a 16-bit scale.
struct color_grid {
  unsigned points = 17;   // per axis, 2 ... 255
  unsigned channels = 3;  // 3: R, G, B; 4: K, C, M, Y; 6: K, C, M, Y, fifth, sixth
  std::vector<std::uint16_t> samples{};
};

using axis_positions = std::vector<std::uint16_t>;  // 16-bit scale, strictly increasing

// Positions spread evenly over 0 ... 65535, each rounded to an 8-bit level, which every working precision represents
// exactly.
axis_positions even_axis(unsigned points);

// A table with its grid: "csc1" for a grid of three channels, else "csc2". Encodings of less than 16 bits keep the top
// bits of every sample. Optional fields that are not set follow the grid.
//
// Packed encodings write the last group of samples in full: `packed12` with an odd number of samples ends with one
// unused field. Delta streams use the shortest code for every difference, of the codes that they use at all, and end
// with the byte that holds the last code.
struct color_table {
  std::optional<std::string> magic{};
  std::string version = "0010";
  unsigned in_channels = 3;
  std::optional<unsigned> out_channels{};
  std::optional<unsigned> points{};
  grid_encoding encoding = grid_encoding::raw16;
  std::optional<unsigned> encoding_byte{};  // of the header, if it is to differ from `encoding`
  unsigned delta_codes_unused = 0;          // how many of the shortest four are left out, at most 3
  std::array<axis_positions, 3> axes{};     // R, G, B; empty: even_axis
  color_grid grid{};

  bytes encode() const;
};

// A "csc1" table that needs no grid: subtype "thrh", "gray", "blck" or "sold".
bytes subtype_table(std::string_view subtype);

}  // namespace vrk::kit
