#include "pictures/sample_page.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numbers>
#include <string>

#include "kit/srgb.h"
#include "pictures/pen.h"

namespace vrk::pictures {
namespace {

constexpr double page_width = 210, page_height = 297, margin = 12, right_edge = page_width - margin;
constexpr double pi = std::numbers::pi;
constexpr double point_cap = 0.352778 * 0.70;  // millimetres of a capital's height per typographic point
constexpr rgb_color white{1, 1, 1}, gray_text{0.35, 0.35, 0.35};

double mix(double a, double b, double t) { return a + (b - a) * t; }
rgb_color mix(rgb_color a, rgb_color b, double t) { return {mix(a.r, b.r, t), mix(a.g, b.g, t), mix(a.b, b.b, t)}; }
rgb_color gray(double v) { return {v, v, v}; }

rgb_color hue(double turn) {  // fully saturated; 0 red, 1/3 green, 2/3 blue
  const auto part = [turn](double shift) {
    const double t = 6 * (turn + shift - std::floor(turn + shift));
    return std::clamp(std::abs(t - 3) - 1, 0.0, 1.0);
  };
  return {part(0), part(2.0 / 3), part(1.0 / 3)};
}

struct tone {
  const char* name;
  rgb_color color;
};
constexpr tone pure[] = {{"C", {0, 0.68, 0.94}}, {"M", {0.93, 0, 0.55}}, {"Y", {1, 0.95, 0}},
                         {"R", {1, 0, 0}},       {"G", {0, 1, 0}},       {"B", {0, 0, 1}}};
constexpr rgb_color black{0, 0, 0};
constexpr rgb_color skin[] = {{0.96, 0.83, 0.76}, {0.90, 0.72, 0.61}, {0.81, 0.61, 0.47},
                              {0.65, 0.45, 0.32}, {0.45, 0.29, 0.20}, {0.26, 0.16, 0.12}};

}  // namespace

sample_page::sample_page(unsigned width, unsigned height)
    : width_(width), height_(height), pixel_(std::max(page_width / width, page_height / height)) {
  origin_x_ = (width * pixel_ - page_width) / 2;
  origin_y_ = (height * pixel_ - page_height) / 2;
  lay_out_header();
  lay_out_pictures();
  lay_out_grays();
  lay_out_gradients();
  lay_out_resolution();
  lay_out_type();
}

void sample_page::lay_out_header() {
  const double end = write("Print test page", margin, 20, 8, {0.10, 0.12, 0.16}, 1.5);
  write("colour, tone, detail", end + 6, 20, 3.2, gray_text);
  constexpr std::array<rgb_color, 4> inks{pure[0].color, pure[1].color, pure[2].color, black};
  for (int i = 0; i < 4; ++i) {
    const rgb_color ink = inks[std::size_t(i)];
    add(right_edge - 8 * (4 - i), 12, 8, 8, [ink](double, double) { return ink; });
  }
  draw({{{margin, 25}, {right_edge, 25}}}, 0.3, {0.10, 0.12, 0.16});
}

void sample_page::lay_out_pictures() {
  constexpr double top = 30, tall = 84, wide = 122;
  add(margin, top, wide, tall, [](double x, double y) { return photograph_at(x / tall, y / tall, wide / tall); });

  constexpr double left = margin + wide + 5, column = right_edge - left, patch = column / 6;
  write("Skin", left, top + 2.2, 2.2, gray_text);
  for (int i = 0; i < 6; ++i) {  // each patch runs from the highlight of that skin to its shadow
    const rgb_color color = skin[i];
    add(left + patch * i, top + 4.5, patch - 0.8, 22, [color](double, double y) {
      const double t = y / 22;
      return t < 0.4 ? mix(mix(color, white, 0.45), color, t / 0.4)
                     : mix(color, {0.45 * color.r, 0.36 * color.g, 0.34 * color.b}, (t - 0.4) / 0.6);
    });
  }
  write("Hue and lightness", left, top + 34, 2.2, gray_text);
  constexpr double sweep_top = top + 36.5, sweep = tall - 36.5;
  add(left, sweep_top, column, sweep, [](double x, double y) {
    const rgb_color full = hue(x / (right_edge - left));
    const double t = y / sweep;
    return t < 0.5 ? mix(white, full, t * 2) : mix(full, black, t * 2 - 1);
  });
}

void sample_page::lay_out_grays() {
  constexpr double top = 120, wide = right_edge - margin;
  write("Gray, continuous and in steps of 5 %", margin, top + 2.2, 2.2, gray_text);
  add(margin, top + 4.5, wide, 8, [](double x, double) { return gray(1 - x / wide); });
  constexpr int steps = 21;
  add(margin, top + 13.5, wide, 8,
      [](double x, double) { return gray(1 - std::min(std::floor(x / wide * steps), steps - 1.0) / (steps - 1)); });
  for (int i = 0; i < steps; i += 2) {
    write(std::to_string(5 * i), margin + wide * (i + 0.3) / steps, top + 24.5, 1.6, gray_text);
  }
}

void sample_page::lay_out_gradients() {
  constexpr double top = 149, bar = 5.6, wide = (right_edge - margin - 8) / 2;
  write("Pure colours to white and to black", margin, top + 2.2, 2.2, gray_text);
  for (int i = 0; i < 6; ++i) {
    const rgb_color color = pure[i].color;
    const double y = top + 4.5 + bar * i;
    write(pure[i].name, margin, y + 3.7, 2.2, gray_text);
    add(margin + 4, y, wide, bar - 0.5, [color](double x, double) { return mix(white, color, x / wide); });
    add(margin + 4 + wide + 4, y, wide, bar - 0.5, [color](double x, double) { return mix(color, black, x / wide); });
  }
}

void sample_page::lay_out_resolution() {
  constexpr double top = 191, side = 44, gap = (right_edge - margin - 4 * side) / 3;
  const double soft = pixel_;  // edges are as soft as one pixel
  const auto left = [](int i) { return margin + i * (side + gap); };
  add(left(0), top, side, side, [soft](double x, double y) {  // star: 36 spokes
    const double dx = x - side / 2, dy = y - side / 2, r = std::hypot(dx, dy);
    if (r > side / 2) return white;
    const double spoke = 36 * std::atan2(dy, dx) / (2 * pi), along = spoke - std::floor(spoke);
    const double to_edge = (0.25 - std::abs(along - 0.5)) * 2 * pi * r / 36;
    return gray(std::clamp(0.5 - to_edge / soft, 0.0, 1.0));
  });
  add(left(1), top, side, side, [](double x, double y) {  // zone plate: 4 lines per millimetre at the rim
    const double dx = x - side / 2, dy = y - side / 2, r = dx * dx + dy * dy;
    return r > side * side / 4 ? gray(0.5) : gray(0.5 + 0.5 * std::cos(pi * r * 4 / side));
  });
  for (int i = 0; i <= 22; ++i) {  // fan: hairlines of 0.05 mm to lines of half a millimetre
    const double angle = pi / 2 * i / 22, x = left(2), y = top + side;
    const point from{x + 6 * std::cos(angle), y - 6 * std::sin(angle)};
    draw({{from, {x + side * std::cos(angle), y - side * std::sin(angle)}}}, 0.05 + 0.45 * i / 22);
  }
  double x = left(3);
  for (double pitch = 0.24; pitch < 1.5; pitch *= 1.25) {  // groups of five upright and five level lines
    std::vector<segment> upright, level;
    for (int i = 0; i < 5; ++i) {
      upright.push_back({{x + pitch * i, top + 0.5}, {x + pitch * i, top + 20}});
      level.push_back({{x, top + 25 + pitch * i}, {x + pitch * 4, top + 25 + pitch * i}});
    }
    const double end = x + pitch * 4;
    char width[16];
    std::snprintf(width, sizeof width, "%.2f", pitch / 2);
    draw(std::move(upright), pitch / 2);
    draw(std::move(level), pitch / 2);
    write(width, x, top + 34, 1.1, gray_text);
    x = end + 2.35;
  }
  add(left(3), top + 36.5, side, 7.5, [](double px, double py) {  // checks of 1, 0.5 and 0.25 millimetres
    const double cell = px < side / 3 ? 1 : px < 2 * side / 3 ? 0.5 : 0.25;
    return gray((int(px / cell) + int(py / cell)) % 2);
  });
}

void sample_page::lay_out_type() {
  constexpr double top = 239.5, tall = 45.5, half = (right_edge - margin) / 2;
  constexpr std::string_view text = "The quick brown fox jumps over the lazy dog, 0123456789";
  add(margin + half, top, half, tall, [](double, double y) {  // light type needs a dark, rich and changing ground
    return y < tall / 2 ? black : mix(rgb_color{0.05, 0.14, 0.45}, {0.62, 0.05, 0.20}, 2 * y / tall - 1);
  });
  double base = top + 5;
  for (const double size : {10.0, 8.0, 6.0, 5.0, 4.0, 3.0}) {
    const double cap = size * point_cap, room = half - 6;
    const auto fitting = [&](std::string_view words) {
      while (stroke_text_width(words) * cap > room) words = words.substr(0, words.rfind(' '));
      return words;
    };
    const std::string line = std::to_string(int(size)) + " pt  " + std::string(text);
    write(fitting(line), margin, base, cap);
    write(fitting(line), margin + half + 3, base, cap, white);
    base += 3 + 0.8 * cap;
  }
  constexpr std::array<rgb_color, 6> colors{pure[3].color, pure[4].color, pure[5].color,
                                            pure[0].color, pure[1].color, {0.45, 0.30, 0.12}};
  double x = margin;
  for (const rgb_color& color : colors) x = write("Colour ", x, top + 37, 2.4, color, 1.3) + 2.5;
  write("Thin strokes in colour show how well planes register.", margin, top + 43, 1.7, {0.55, 0.10, 0.45});
  write("Light strokes stay open on a rich ground.", margin + half + 3, top + 34, 2.0, {1, 0.95, 0.6});
  write("Even at four points, and across a blend of two inks.", margin + half + 3, top + 40, 4 * point_cap, white);
}

void sample_page::add(double left, double top, double width, double height,
                      std::function<rgb_color(double, double)> shade) {
  panels_.push_back({left, top, width, height, std::move(shade)});
}

void sample_page::draw(std::vector<segment> strokes, double thickness, rgb_color color) {
  pen_work work{std::move(strokes), thickness / 2, color, page_height, 0};
  for (const segment& s : work.strokes) {
    work.top = std::min({work.top, s.from.y - thickness, s.to.y - thickness});
    work.bottom = std::max({work.bottom, s.from.y + thickness, s.to.y + thickness});
  }
  pens_.push_back(std::move(work));
}

double sample_page::write(std::string_view text, double x, double base, double cap, rgb_color color, double bold) {
  std::vector<segment> strokes = stroke_text(text);
  for (segment& s : strokes) {
    for (point* p : {&s.from, &s.to}) *p = {x + p->x * cap, base + (p->y - 1) * cap};
  }
  draw(std::move(strokes), 0.11 * cap * bold, color);
  return x + stroke_text_width(text) * cap;
}

// Draws the strokes that cross the line at y, in millimetres of the page.
void sample_page::paint(const pen_work& work, double y, std::vector<rgb_color>& line) const {
  for (const segment& s : work.strokes) {
    draw_stroke(s, work.half_thickness, {width_, pixel_, -origin_x_, y},
                [&](unsigned i, double share) { line[i] = mix(line[i], work.color, share); });
  }
}

void sample_page::draw_line(unsigned y, std::uint8_t* rgb) const {
  std::vector<rgb_color> line(width_, white);
  const double at = (y + 0.5) * pixel_ - origin_y_;
  for (const panel& p : panels_) {
    if (at < p.top || at >= p.top + p.height) continue;
    for (unsigned i = 0; i < width_; ++i) {
      const double x = (i + 0.5) * pixel_ - origin_x_ - p.left;
      if (x >= 0 && x < p.width) line[i] = p.shade(x, at - p.top);
    }
  }
  for (const pen_work& work : pens_) {
    if (at >= work.top - pixel_ && at <= work.bottom + pixel_) paint(work, at, line);
  }
  for (const rgb_color& c : line) {
    for (const double sample : {c.r, c.g, c.b}) *rgb++ = kit::srgb_byte(sample);
  }
}

}  // namespace vrk::pictures
