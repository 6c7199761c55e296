// Why a table image is refused, and which levels it holds: for people who make tables.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "kit/bytes.h"

namespace vrk::kit {

// A field of an image that is not as it must be.
struct refusal {
  std::string field{};  // empty: nothing is refused
  std::string found{};
  std::optional<std::uint64_t> offset{};  // of the field, from the first byte of the image; none for its length
  std::string expected{};

  explicit operator bool() const { return !field.empty(); }

  // The end of a sentence that begins with the name of the table: "has version "0020" at offset 4, expected "001z" or
  // older". Empty when nothing is refused.
  std::string text() const;
};

// Each returns the first reason for which the library's create function would refuse the image.
refusal why_refused_csc1(const bytes& image, bool prec12);
refusal why_refused_csc2(const bytes& image, unsigned input_samples, bool prec12);
refusal why_refused_edpr(const bytes& image);
refusal why_refused_edtb(const bytes& image);
refusal why_refused_dith(const bytes& image);

// Curve images of `count` curves, post-processing main tables for pixels of `planes` samples, and the curve of one
// plane. The library does not know the length of these images: one that is too short must not be passed to it.
refusal why_refused_curves(const bytes& image, unsigned count);
refusal why_refused_main_curves(const bytes& image, unsigned planes);
refusal why_refused_plane_curve(const bytes& image);

// The first reason for which look-ups find nothing in a parameter blob, whatever they ask for. Entries may still lie
// outside it.
refusal why_refused_blob(const bytes& image);

// The input value (0 ... 1023) that each level of each plane stands for, in record order K, C, M, Y, fifth, sixth; none
// for a plane that is not in use. The image is one that the library takes.
std::array<std::vector<std::uint16_t>, 6> ed_level_values(const bytes& edpr);

// The same of a dither table, as a handle of that input width takes them: 0 ... 255, or 0 ... 1023 under in16.
std::array<std::vector<std::uint16_t>, 6> dither_level_values(const bytes& dith, bool in16);

}  // namespace vrk::kit
