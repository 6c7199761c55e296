// A small picture in memory: rectangles, lines and text on white, saved as PNG.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "pictures/stroke_font.h"
#include "tools/files/output_set.h"

namespace vrk::tool {

using pixel = std::array<std::uint8_t, 3>;  // R, G, B in sRGB

inline constexpr pixel ink_text{38, 42, 48}, faint_text{120, 126, 134};

class canvas {
 public:
  canvas(unsigned width, unsigned height);

  unsigned width() const { return width_; }
  unsigned height() const { return height_; }

  // What lies outside the picture is not drawn.
  void fill(unsigned left, unsigned top, unsigned width, unsigned height, pixel color);

  // Lines with round ends.
  void draw(const std::vector<pictures::segment>& strokes, double thickness, pixel color);

  // Text with capitals `cap` pixels high. base: y of the base line.
  enum class align { left, centre, right };
  void write(std::string_view text, double x, double base, double cap, pixel color = ink_text,
             align where = align::left);

  void save(output_file& to) const;

 private:
  unsigned width_, height_;
  std::vector<pixel> pixels_;
};

}  // namespace vrk::tool
