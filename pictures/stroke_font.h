// A typeface of single strokes, which can be drawn at any size.
#pragma once

#include <string_view>
#include <vector>

namespace vrk::pictures {

struct point {
  double x, y;
};

// One straight piece of a letter; a dot is a segment of length 0.
struct segment {
  point from, to;
};

// The strokes of a line of text: x from 0, y from 0 (cap line) to 1 (base line), descenders to 1.33. A character that
// the typeface lacks becomes a space.
std::vector<segment> stroke_text(std::string_view text);

// Width of that line in the same unit (height of capitals), without the space after its last letter.
double stroke_text_width(std::string_view text);

}  // namespace vrk::pictures
