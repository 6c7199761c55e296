#include "pictures/stroke_font.h"

#include <algorithm>

namespace vrk::pictures {
namespace {

constexpr double grid = 12;  // units from cap line to base line
constexpr double letter_space = 3.4, word_space = 5;

// A glyph is a list of strokes separated by blanks. A stroke is a list of points; x and y are one base-36 digit each. y
// 0 is the cap line, 4 the top of small letters, c the base line, g the bottom of descenders. A point marked * is the
// control point of a parabola; between two of them the curve passes through their middle.
struct glyph {
  char character;
  std::string_view strokes;
};

constexpr glyph glyphs[] = {
    {'A', "0c408c 1878"},
    {'B', "000c 004070*76*4606 4686*8c*4c0c"},
    {'C', "8380*4000*0c*4c8c*89"},
    {'D', "000c3c8c*80*3000"},
    {'E', "70000c7c 0656"},
    {'F', "70000c 0656"},
    {'G', "8380*4000*0c*4c8c*898757"},
    {'H', "000c 808c 0686"},
    {'I', "000c"},
    {'J', "60696c*3c0c*09"},
    {'K', "000c 8007 348c"},
    {'L', "000c7c"},
    {'M', "0c0058a0ac"},
    {'N', "0c008c80"},
    {'O', "4080*8c*0c*00*40"},
    {'P', "0c004080*87*4707"},
    {'Q', "4080*8c*0c*00*40 599d"},
    {'R', "0c004080*87*4707 478c"},
    {'S', "8380*4000*06*4686*8c*4c0c*09"},
    {'T', "0080 404c"},
    {'U', "00080c*4c8c*8880"},
    {'V', "004c80"},
    {'W', "003c639cc0"},
    {'X', "008c 800c"},
    {'Y', "004680 464c"},
    {'Z', "00800c8c"},
    {'a', "3464*6c*0c*04*34 646c"},
    {'b', "3464*6c*0c*04*34 000c"},
    {'c', "6664*3404*0c*3c6c*6a"},
    {'d', "3464*6c*0c*04*34 606c"},
    {'e', "086864*3404*0c*3c5c*6a"},
    {'f', "5020*232c 0454"},
    {'g', "3464*6c*0c*04*34 646d6g*3g1g*0f"},
    {'h', "000c 0704*64*676c"},
    {'i', "040c 0101"},
    {'j', "242d2g*0g 2121"},
    {'k', "000c 6409 276c"},
    {'l', "00090c*2c"},
    {'m', "040c 0704*54*575c 5754*a4*a7ac"},
    {'n', "040c 0704*64*676c"},
    {'o', "3464*6c*0c*04*34"},
    {'p', "3464*6c*0c*04*34 040g"},
    {'q', "3464*6c*0c*04*34 646g"},
    {'r', "040c 0804*44"},
    {'s', "6664*3404*08*3868*6c*3c0c*0a"},
    {'t', "20292c*5c 0454"},
    {'u', "04090c*6c*69 646c"},
    {'v', "043c64"},
    {'w', "042c456c84"},
    {'x', "046c 640c"},
    {'y', "043c 641g"},
    {'z', "04640c6c"},
    {'0', "3060*6c*0c*00*30"},
    {'1', "13303c"},
    {'2', "0300*3060*6366*0c6c"},
    {'3', "0200*3060*66*36 3666*6c*3c0c*0a"},
    {'4', "5c500878"},
    {'5', "6000053565*6c*3c0c*0a"},
    {'6', "3565*6c*0c*05*35 5001*08"},
    {'7', "00602c"},
    {'8', "3060*66*06*00*30 3666*6c*0c*06*36"},
    {'9', "3767*60*00*07*37 1c6b*64"},
    {'.', "0c0c"},
    {',', "1b0e"},
    {':', "0505 0c0c"},
    {'-', "0747"},
    {'+', "353b 0868"},
    {'=', "0666 0a6a"},
    {'/', "0d50"},
    {'(', "2003*0b*2e"},
    {')', "0023*2b*0e"},
    {'\'', "0003"},
    {'!', "0008 0c0c"},
    {'%', "2040*44*04*00*20 801c 7898*9c*5c*58*78"},
};

struct knot {
  point at;
  bool bends;
};

double digit(char c) { return c <= '9' ? c - '0' : c - 'a' + 10; }

std::vector<knot> knots(std::string_view stroke) {
  std::vector<knot> out;
  for (std::size_t i = 0; i + 1 < stroke.size(); i += 2) {
    const bool bends = i + 2 < stroke.size() && stroke[i + 2] == '*';
    out.push_back({{digit(stroke[i]) / grid, digit(stroke[i + 1]) / grid}, bends});
    if (bends) ++i;
  }
  return out;
}

point between(point a, point b, double t) { return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t}; }

void add_stroke(std::string_view stroke, double x, std::vector<segment>& out) {
  constexpr int pieces = 6;  // straight pieces of one parabola
  const std::vector<knot> path = knots(stroke);
  point pen = path.front().at;
  const auto draw_to = [&](point to) {
    out.push_back({{pen.x + x, pen.y}, {to.x + x, to.y}});
    pen = to;
  };
  for (std::size_t i = 1; i < path.size(); ++i) {
    if (!path[i].bends) {
      draw_to(path[i].at);
      continue;
    }
    const knot& next = path[i + 1];  // a stroke never ends on a control point
    const point start = pen, control = path[i].at, end = next.bends ? between(control, next.at, 0.5) : next.at;
    for (int k = 1; k <= pieces; ++k) {
      const double t = double(k) / pieces;
      draw_to(between(between(start, control, t), between(control, end, t), t));
    }
    if (!next.bends) ++i;
  }
}

// Adds the strokes of one character at x and returns the x of the next one.
double add_character(char character, double x, std::vector<segment>& out) {
  const auto* const found = std::find_if(std::begin(glyphs), std::end(glyphs),
                                         [character](const glyph& g) { return g.character == character; });
  if (found == std::end(glyphs)) return x + word_space / grid;
  double width = 0;
  for (std::string_view rest = found->strokes; !rest.empty();) {
    const std::string_view stroke = rest.substr(0, rest.find(' '));
    rest.remove_prefix(std::min(rest.size(), stroke.size() + 1));
    for (const knot& k : knots(stroke)) width = std::max(width, k.at.x);
    add_stroke(stroke, x, out);
  }
  return x + width + letter_space / grid;
}

}  // namespace

std::vector<segment> stroke_text(std::string_view text) {
  std::vector<segment> out;
  double x = 0;
  for (const char character : text) x = add_character(character, x, out);
  return out;
}

double stroke_text_width(std::string_view text) {
  double width = 0;
  for (const segment& s : stroke_text(text)) width = std::max({width, s.from.x, s.to.x});
  return width;
}

}  // namespace vrk::pictures
