#include "tools/page/paper.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace vrk::tool {
namespace {

struct named_paper {
  std::string_view name;
  paper_size size;
};
constexpr named_paper papers[] = {
    {"a3", {297, 420}},         {"a4", {210, 297}},        {"a5", {148, 210}},
    {"a6", {105, 148}},         {"b4", {250, 353}},        {"b5", {176, 250}},
    {"letter", {215.9, 279.4}}, {"legal", {215.9, 355.6}}, {"tabloid", {279.4, 431.8}},
};

struct unit {
  std::string_view name;
  double mm;
};
constexpr unit units[] = {{"mm", 1}, {"cm", 10}, {"in", mm_per_inch}};

// Two numbers with an "x" between them at the start of `text`, which they are taken from.
template <class Number>
bool take_pair(std::string_view& text, Number& x, Number& y) {
  const char* const end = text.data() + text.size();
  const auto first = std::from_chars(text.data(), end, x);
  if (first.ec != std::errc() || first.ptr == end || *first.ptr != 'x') return false;
  const auto second = std::from_chars(first.ptr + 1, end, y);
  text.remove_prefix(std::size_t(second.ptr - text.data()));
  return second.ec == std::errc();
}

}  // namespace

std::optional<paper_size> parse_paper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; });
  for (const named_paper& paper : papers) {
    if (paper.name == text) return paper.size;
  }
  std::string_view rest = text;
  double width = 0, height = 0;
  if (!take_pair(rest, width, height)) return {};
  const auto in_range = [](double mm) { return mm >= shortest_paper && mm <= longest_paper; };  // false for NaN
  for (const auto& [name, mm] : units) {
    if (name == rest && in_range(width * mm) && in_range(height * mm)) return paper_size{width * mm, height * mm};
  }
  return {};
}

std::optional<resolution> parse_dpi(const std::string& text) {
  const std::string both = text.find('x') == std::string::npos ? text + "x" + text : text;
  std::string_view rest = both;
  unsigned x = 0, y = 0;
  const auto in_range = [](unsigned dpi) { return dpi >= lowest_dpi && dpi <= highest_dpi; };
  if (!take_pair(rest, x, y) || !rest.empty() || !in_range(x) || !in_range(y)) return {};
  return resolution{double(x), double(y)};
}

}  // namespace vrk::tool
