// What a table image says about itself, for programs that choose by it what to do. The images need not be ones that the
// library takes: a field that is missing reads as 0.
#pragma once

#include <optional>
#include <string>

#include "kit/curve_image.h"

namespace vrk::kit {

enum class table_kind { csc1, csc2, curves, edpr, edtb, dith, blob, unknown };

// By the magic that the image opens with.
table_kind kind_of(const bytes& image);

// Whether a "csc1" table names a fixed rule in place of a grid.
bool is_fixed_rule(const bytes& csc1);

// Whether a "csc1" table turns R, G, B into one sample: subtypes "gray" and "blck".
bool leaves_one_sample(const bytes& csc1);

// Ink planes that a table of the second converter makes: those of a "csc2" grid, 1 for a curve image. None for what
// the converter refuses.
std::optional<unsigned> inks_made(const bytes& csc2);

// Curves that a curve image announces.
unsigned curve_count(const bytes& curves);

// The curve of an image that has one; none when it has another number of curves, or ends early.
std::optional<curve> only_curve(const bytes& curves);

// Planes that leave post-processing with this main table when so many come in: as many, or six of four.
unsigned planes_made(const bytes& main_curves, unsigned planes);

// Columns after which everything in an "edpr" table that is laid out over the page repeats: modulation matrices and dot
// patterns, with their shifts. 1 ... 255^4.
std::uint64_t columns_of_a_repeat(const bytes& edpr);

// What a parameter blob holds: "CS1T", "CS2T", "HATT", "INGM", "OTGM", "HRKT". Empty when the image is no blob.
std::string blob_type(const bytes& image);

}  // namespace vrk::kit
