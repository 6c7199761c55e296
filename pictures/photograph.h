// A computed picture with the statistics of a photograph: soft sky, haze, foliage, water, grain.
#pragma once

#include "kit/bytes.h"

namespace vrk::pictures {

struct rgb_color {
  double r, g, b;  // sRGB levels, 0 ... 1
};

// Colour of the scene at u (0 left ... aspect right), v (0 top ... 1 bottom). aspect: width over height, 1 ... 2.
rgb_color photograph_at(double u, double v, double aspect);

// The whole picture: width * height pixels of R, G, B bytes, row by row. The same bytes on every run.
kit::bytes photograph(unsigned width, unsigned height);

// Film grain of a pixel: -1 ... 1, a fixed function of its position.
double film_grain(unsigned x, unsigned y);

}  // namespace vrk::pictures
