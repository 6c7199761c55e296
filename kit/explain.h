// Why a table image is refused, and which levels it holds: for people who make tables.
#pragma once

#include <array>
#include <string>

#include "kit/bytes.h"

namespace vrk::kit {

// Each returns the first reason for which the library's create function would refuse the image, as the end of a
// sentence that begins with the name of the table: "has version "0020", expected "001z" or older". Empty when there is
// none. The body of a delta stream is not decoded.
std::string why_refused_csc1(const bytes& image, bool prec12);
std::string why_refused_csc2(const bytes& image, unsigned input_samples, bool prec12);
std::string why_refused_edpr(const bytes& image);
std::string why_refused_edtb(const bytes& image);
std::string why_refused_dith(const bytes& image);

// Curve images of `count` curves, and post-processing main tables for pixels of `planes` samples. The library does not
// know the length of these images: one that is too short must not be passed to it.
std::string why_refused_curves(const bytes& image, unsigned count);
std::string why_refused_main_curves(const bytes& image, unsigned planes);

// The input value (0 ... 1023) that each level of each plane stands for, in record order K, C, M, Y, fifth, sixth; none
// for a plane that is not in use. The image is one that the library takes.
std::array<std::vector<std::uint16_t>, 6> ed_level_values(const bytes& edpr);

// The same of a dither table, as a handle of that input width takes them: 0 ... 255, or 0 ... 1023 under in16.
std::array<std::vector<std::uint16_t>, 6> dither_level_values(const bytes& dith, bool in16);

}  // namespace vrk::kit
