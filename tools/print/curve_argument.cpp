#include "tools/print/curve_argument.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "kit/inspect.h"
#include "kit/tone_curves.h"
#include "tools/print/blob_argument.h"

namespace vrk::tool {
namespace {

[[noreturn]] void refuse_curve(const std::string& argument, const std::string& expected) {
  throw usage_error("curve " + argument + ": expected " + expected);
}

// The whole text as a number, if it is one.
std::optional<double> number(std::string_view text) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return {};
  return value;
}

kit::curve curve_of_points(std::string_view list, const std::string& argument) {
  std::vector<kit::control_point> points;
  while (!list.empty()) {
    const std::string_view item = list.substr(0, list.find(','));
    list.remove_prefix(std::min(list.size(), item.size() + 1));
    const std::size_t slash = std::min(item.find('/'), item.size());
    const auto in = number(item.substr(0, slash)), out = number(item.substr(std::min(item.size(), slash + 1)));
    const auto percent = [](std::optional<double> v) { return v && *v >= 0 && *v <= 100; };
    if (!percent(in) || !percent(out) || (!points.empty() && *in / 100 <= points.back().in)) {
      refuse_curve(argument, "points as IN/OUT in percent, in rising order of IN");
    }
    points.push_back({*in / 100, *out / 100});
  }
  if (points.size() < 2) refuse_curve(argument, "at least two points");
  return kit::curve_through(points);
}

struct maker {
  std::string_view name;
  double least, most;
  kit::curve (*make)(double);
};
constexpr maker makers[] = {
    {"gamma", 0.1, 10, kit::gamma_curve},
    {"s", -1, 1, kit::s_curve},
    {"dot-gain", 0, 0.25, kit::dot_gain_compensation},
    {"ink-limit", 0, 1, kit::ink_limiting},
};

// None when the argument is a file.
std::optional<kit::curve> made_curve(const std::string& argument) {
  const std::size_t colon = argument.find(':');
  if (colon == std::string::npos) return {};
  const std::string name = argument.substr(0, colon), value = argument.substr(colon + 1);
  if (name == "points") return curve_of_points(value, argument);
  const auto* const found =
      std::find_if(std::begin(makers), std::end(makers), [&](const maker& m) { return m.name == name; });
  if (found == std::end(makers)) return {};
  const auto parameter = number(value);
  if (!parameter || !(*parameter >= found->least && *parameter <= found->most)) {  // not a number is neither
    char range[64];
    std::snprintf(range, sizeof range, "a number from %g to %g", found->least, found->most);
    refuse_curve(argument, range);
  }
  return found->make(*parameter);
}

}  // namespace

named_curve read_curve(const std::string& argument, std::span<const std::string_view> names) {
  const std::size_t equals = argument.find('=');
  const auto name =
      equals == std::string::npos ? names.end() : std::find(names.begin(), names.end(), argument.substr(0, equals));
  const bool named = name != names.end();
  const std::string curve = named ? argument.substr(equals + 1) : argument;
  named_curve result{{}, {curve, {}}};
  if (named) result.of = std::size_t(name - names.begin());
  const auto made = made_curve(curve);
  result.image = made ? table{curve, kit::curve_image{.curves = {*made}}.encode()} : read_table(curve);
  return result;
}

kit::curve only_curve(const table& image) {
  const auto curve = kit::only_curve(image.image);
  if (!curve) refuse(image, "is no image of one curve");
  return *curve;
}

}  // namespace vrk::tool
