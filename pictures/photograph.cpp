#include "pictures/photograph.h"

#include <algorithm>
#include <cmath>

#include "kit/srgb.h"

namespace vrk::pictures {
namespace {

constexpr double horizon = 0.56, shore = 0.60, meadow = 0.80;  // v of the skyline's foot, the lake's edge and the grass

double mix(double a, double b, double t) { return a + (b - a) * t; }
rgb_color mix(rgb_color a, rgb_color b, double t) { return {mix(a.r, b.r, t), mix(a.g, b.g, t), mix(a.b, b.b, t)}; }
rgb_color scaled(rgb_color a, double s) { return {a.r * s, a.g * s, a.b * s}; }

double ramp(double from, double to, double x) {  // smooth step
  const double t = std::clamp((x - from) / (to - from), 0.0, 1.0);
  return t * t * (3 - 2 * t);
}

// Lattice hash: 0 ... 1, the same for the same cell.
double hash(int x, int y) {
  std::uint32_t h = std::uint32_t(x) * 0x8DA6B343u ^ std::uint32_t(y) * 0xD8163841u;
  h = (h ^ h >> 15) * 0x2C1B3C6Du;
  h = (h ^ h >> 12) * 0x297A2D39u;
  return double(h ^ h >> 15) / 4294967295.0;
}

double noise(double x, double y) {  // value noise, 0 ... 1
  const double fx = std::floor(x), fy = std::floor(y);
  const int ix = int(fx), iy = int(fy);
  const double u = ramp(0, 1, x - fx), v = ramp(0, 1, y - fy);
  return mix(mix(hash(ix, iy), hash(ix + 1, iy), u), mix(hash(ix, iy + 1), hash(ix + 1, iy + 1), u), v);
}

double fractal(double x, double y, int octaves) {  // sum of octaves of noise, 0 ... 1, mean 0.5
  double sum = 0, weight = 0.5, total = 0;
  for (int i = 0; i < octaves; ++i) {
    sum += weight * noise(x, y);
    total += weight;
    weight *= 0.5;
    const double turned = 1.6 * x + 1.2 * y + 7.3;  // a rotation by 37 degrees and a doubling hide the lattice
    y = -1.2 * x + 1.6 * y + 3.1;
    x = turned;
  }
  return sum / total;
}

double ridged(double x, double y) {  // 0 ... 1 with sharp crests
  double sum = 0, weight = 0.5;
  for (int i = 0; i < 6; ++i, weight *= 0.55) {
    sum += weight * (1 - std::abs(2 * noise(x, y) - 1));
    const double turned = 1.6 * x + 1.2 * y + 5.1;
    y = -1.2 * x + 1.6 * y + 2.7;
    x = turned;
  }
  return sum;
}

rgb_color sky(double u, double v, double sun_u) {
  const double height = std::clamp(v / horizon, 0.0, 1.0);
  rgb_color c = mix({0.13, 0.33, 0.64}, {0.50, 0.70, 0.87}, ramp(0, 0.75, height));
  c = mix(c, {0.99, 0.85, 0.66}, ramp(0.62, 1.05, height));
  const double glow = std::exp(-4.5 * std::hypot(u - sun_u, 1.6 * (v - horizon + 0.10)));
  c = mix(c, {1.0, 0.93, 0.76}, 0.85 * glow);
  const double stretch = 4 + 9 * height, drift = fractal(2.2 * u, 5 * v, 3);
  const double density = fractal(2.4 * u + drift, stretch * v + 0.7 * drift, 6);
  const double toward_sun = fractal(2.4 * u + drift + 0.10, stretch * v + 0.7 * drift + 0.16, 6);
  const rgb_color lit = mix({1.0, 0.99, 0.97}, {1.0, 0.83, 0.68}, height);
  const rgb_color cloud = mix({0.60, 0.63, 0.72}, lit, std::clamp(0.75 + 4 * (density - toward_sun), 0.0, 1.0));
  return mix(c, cloud, 0.92 * ramp(0.50, 0.68, density));
}

// One range of hills: `top` is the v of its skyline, `relief` the height of its peaks above that, `haze` the share of
// haze in front of it.
struct hills {
  double top, relief, frequency, seed, haze, snow;
  rgb_color light, shade;
};
constexpr hills ranges[] = {
    // nearest first
    {0.555, 0.10, 3.7, 83.0, 0.13, 0.00, {0.40, 0.50, 0.22}, {0.09, 0.18, 0.12}},
    {0.50, 0.15, 2.9, 47.0, 0.34, 0.00, {0.55, 0.56, 0.42}, {0.18, 0.26, 0.27}},
    {0.43, 0.26, 2.1, 11.0, 0.52, 0.75, {0.62, 0.60, 0.62}, {0.27, 0.31, 0.42}},
};

// Conifers along the far shore: every slot holds one tree, a triangle with ragged edges. Returns whether the point is
// on a tree.
bool conifer(double u, double v, rgb_color& c) {
  const double slot = 55 * u;
  bool hit = false;
  for (int near = -1; near <= 1; ++near) {
    const int tree = int(std::floor(slot)) + near;
    const double middle = tree + 0.2 + 0.6 * hash(tree, 5),
                 height = 0.035 + 0.05 * hash(tree, 9) * noise(0.2 * tree, 3);
    const double below = v - (shore + 0.004 - height);
    if (below < 0) continue;
    const double reach = 14 * below * (0.75 + 0.6 * noise(130 * v, 1.7 * tree)) + 0.05, side = (slot - middle) / reach;
    if (std::abs(side) > 1) continue;
    const double light = std::clamp(0.35 + 0.4 * side, 0.0, 1.0) * fractal(40 * u, 90 * v, 3);
    c = mix({0.04, 0.10, 0.08}, {0.23, 0.33, 0.13}, light * 1.6);
    hit = true;
  }
  return hit;
}

// The nearest thing at this point: a tree, a range of hills, or the sky.
rgb_color land(double u, double v, double sun_u) {
  rgb_color c{};
  if (conifer(u, v, c)) return c;
  for (const hills& range : ranges) {
    if (v < range.top - 1.05 * range.relief) continue;  // above the highest peak
    const double x = range.frequency * u + range.seed;
    const double crest = range.top - range.relief * (1.7 * std::abs(fractal(x, range.seed, 5) - 0.5) + 0.2);
    if (v < crest) continue;
    const double depth = v - crest, along = 5 * x + 9 * depth, down = 16 * depth;  // gullies lean with the slope
    const double rock = ridged(along, down), slope = ridged(along + 0.09, down - 0.07) - rock;  // lit from the right
    rgb_color face = mix(range.shade, range.light, std::clamp(0.45 + 2.2 * slope, 0.0, 1.0));
    const double snow_line = range.snow * ramp(0.13, 0.04, depth + 0.16 * (rock - 0.5));
    face = mix(face, {0.95, 0.95, 0.98}, snow_line * std::clamp(0.72 + 2.0 * slope, 0.2, 1.0));
    return mix(face, {0.86, 0.80, 0.77}, std::clamp(range.haze + 0.5 * depth, 0.0, 0.9));
  }
  return sky(u, v, sun_u);
}

// A striped balloon, the shaded sphere of the picture. Returns whether the point is on it.
bool balloon(double u, double v, double centre_u, rgb_color& c) {
  constexpr double centre_v = 0.225, radius = 0.135;
  const double x = (u - centre_u) / radius, y = (v - centre_v) / radius;
  const double taper = y > 0 ? 1 - 0.28 * y * y : 1, across = x / taper;  // narrower towards the basket
  const double flat = across * across + y * y;
  if (flat < 1) {
    const double z = std::sqrt(1 - flat);
    const double light = std::clamp(0.62 * across - 0.42 * y + 0.66 * z, 0.0, 1.0);
    const int gore = int(std::floor(std::atan2(across, z) * 3.6 + 20));
    constexpr rgb_color cloth[] = {{0.86, 0.10, 0.12}, {0.98, 0.76, 0.10}, {0.93, 0.40, 0.08}, {0.12, 0.28, 0.62}};
    c = scaled(std::abs(y - 0.22) < 0.09 ? rgb_color{0.96, 0.94, 0.90} : cloth[gore % 4], 0.22 + 0.82 * light);
    const double spark = std::pow(std::clamp(0.50 * across - 0.42 * y + 0.76 * z, 0.0, 1.0), 28);
    c = mix(c, {1, 1, 0.95}, 0.55 * spark);
    return true;
  }
  const bool basket = std::abs(x) < 0.12 && y > 1.28 && y < 1.46;
  const bool rope = y > 0.9 && y <= 1.28 && std::abs(std::abs(x) - (0.34 - 0.18 * y)) < 0.012;
  if (basket) c = mix({0.30, 0.18, 0.10}, {0.62, 0.42, 0.24}, noise(260 * u, 300 * v) * 0.6 + 2 * x);
  if (rope) c = {0.2, 0.15, 0.12};
  return basket || rope;
}

rgb_color scene(double u, double v, double aspect) {
  const double sun_u = 0.74 * aspect, balloon_u = 0.27 * aspect;
  rgb_color c{};
  const double edge = meadow + 0.035 * (fractal(3 * u, 2, 4) - 0.5) + 0.03 * noise(160 * u, 9) * noise(20 * u, 4);
  if (v >= edge) {  // grass: blades are noise stretched upright, longer towards the viewer
    const double depth = (v - meadow) / (1 - meadow), sway = noise(7 * u, 7 * v);
    const double far = fractal(190 * u, 26 * v + 2 * sway, 4), close = fractal(75 * u + 6 * sway, 9 * v, 5);
    c = mix({0.07, 0.15, 0.04}, {0.52, 0.64, 0.18}, ramp(0.30, 0.72, mix(far, close, ramp(0.1, 0.8, depth))));
    c = scaled(c, 0.72 + 0.5 * fractal(4 * u, 9 * v, 3));
    const int i = int(std::floor(42 * u)), j = int(std::floor(70 * v));
    const double radius = 0.10 + 0.17 * depth, blow_u = 42 * u - i - 0.3 - 0.4 * hash(i, j),
                 blow_v = 0.6 * (70 * v - j - 0.3 - 0.4 * hash(j, i)), from = std::hypot(blow_u, blow_v) / radius;
    if (hash(3 * i + 1, 5 * j) < 0.38 && from < 0.85 + 0.15 * std::cos(5 * std::atan2(blow_v, blow_u))) {
      constexpr rgb_color petals[] = {{0.86, 0.09, 0.10}, {0.97, 0.80, 0.12}, {0.95, 0.93, 0.95}, {0.52, 0.25, 0.72}};
      c = mix(petals[int(hash(i, 7 * j) * 3.999)], {0.95, 0.75, 0.2}, from < 0.3 ? 1.0 : 0.0);
      c = scaled(c, 1.05 - 0.35 * from);
    }
    return c;
  }
  if (v >= shore) {  // the lake mirrors the land, shaken by ripples that grow towards the viewer
    const double depth = (v - shore) / (meadow - shore), ripple = fractal(9 * u, (190 - 120 * depth) * v, 3) - 0.5;
    const double mirror_u = u + 0.02 * depth * ripple, mirror_v = 2 * shore - v - (0.01 + 0.10 * depth) * ripple;
    c = land(mirror_u, mirror_v, sun_u);
    balloon(mirror_u, mirror_v, balloon_u, c);
    c = mix(scaled(c, 0.82), {0.10, 0.24, 0.33}, 0.22 + 0.3 * depth);
    const double path = std::exp(-9 * std::abs(u - sun_u));
    return mix(c, {1.0, 0.92, 0.74}, 0.8 * path * ramp(0.08, 0.22, ripple));
  }
  c = land(u, v, sun_u);
  balloon(u, v, balloon_u, c);
  return c;
}

}  // namespace

rgb_color photograph_at(double u, double v, double aspect) { return scene(u, v, aspect); }

double film_grain(unsigned x, unsigned y) { return hash(int(x), int(y)) + hash(int(y), ~int(x)) - 1; }

kit::bytes photograph(unsigned width, unsigned height) {
  kit::bytes out;
  out.reserve(std::size_t{3} * width * height);
  for (unsigned y = 0; y < height; ++y) {
    for (unsigned x = 0; x < width; ++x) {
      const rgb_color c = photograph_at((x + 0.5) / height, (y + 0.5) / height, double(width) / height);
      const double grain = 0.012 * film_grain(x, y);
      for (const double sample : {c.r, c.g, c.b}) out.push_back(kit::srgb_byte(sample + grain));
    }
  }
  return out;
}

}  // namespace vrk::pictures
