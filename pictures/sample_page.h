// The sample page of `vrk demo`: drawn line by line at any size.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "pictures/photograph.h"
#include "pictures/stroke_font.h"

namespace vrk::pictures {

// A4 upright in millimetres, centred on a raster of any size: a photograph, skin tones, a hue sweep, a gray ramp and a
// step wedge, gradients of the pure colours, a star, a zone plate, line wedges, and type from 10 to 3 points.
class sample_page {
 public:
  explicit sample_page(unsigned width = 1240, unsigned height = 1754);  // A4 at 150 dots per inch

  unsigned width() const { return width_; }
  unsigned height() const { return height_; }

  // Writes line y as width() pixels of R, G, B bytes. Lines may be drawn in any order.
  void draw_line(unsigned y, std::uint8_t* rgb) const;

 private:
  // A rectangle whose colour is a function of the place inside it; all in millimetres.
  struct panel {
    double left, top, width, height;
    std::function<rgb_color(double x, double y)> shade;
  };
  // Lines and letters of one colour and one thickness, in millimetres of the page.
  struct pen_work {
    std::vector<segment> strokes;
    double half_thickness;
    rgb_color color;
    double top, bottom;  // extent of the strokes, thickness included
  };

  void lay_out_header();
  void lay_out_pictures();
  void lay_out_grays();
  void lay_out_gradients();
  void lay_out_resolution();
  void lay_out_type();

  void add(double left, double top, double width, double height, std::function<rgb_color(double, double)> shade);
  void draw(std::vector<segment> strokes, double thickness, rgb_color color = {0, 0, 0});
  // Letters with capitals `cap` millimetres high. base: y of the base line; bold: factor of the stroke thickness.
  // Returns the x where the text ends.
  double write(std::string_view text, double x, double base, double cap, rgb_color color = {0, 0, 0}, double bold = 1);

  void paint(const pen_work& work, double y, std::vector<rgb_color>& line) const;

  unsigned width_, height_;
  double pixel_;                        // millimetres per pixel
  double origin_x_ = 0, origin_y_ = 0;  // top left corner of the page on the raster, in millimetres
  std::vector<panel> panels_;
  std::vector<pen_work> pens_;
};

}  // namespace vrk::pictures
