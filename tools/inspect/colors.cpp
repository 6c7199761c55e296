#include "tools/inspect/colors.h"

#include <cmath>

#include "kit/inspect.h"

namespace vrk::tool {
namespace {

std::vector<std::string> names_of(const table& image, unsigned channels) {
  if (kit::kind_of(image.image) == kit::table_kind::csc2) {
    const std::vector<std::string> inks{"K", "C", "M", "Y", "fifth", "sixth"};
    return {inks.begin(), inks.begin() + channels};
  }
  return channels == 1 ? std::vector<std::string>{"gray"} : std::vector<std::string>{"R", "G", "B"};
}

}  // namespace

colors_made::colors_made(const table& image)
    : converter_(kit::kind_of(image.image) == kit::table_kind::csc2 ? make_csc2(image, {3, 16}, 16)
                                                                    : make_csc1(image, {3, 16}, 16)),
      names_(names_of(image, converter_->output().samples)) {}

std::vector<double> colors_made::of(const std::vector<std::uint16_t>& rgb) const {
  const std::size_t pixels = rgb.size() / 3;
  std::vector<std::uint16_t> made(pixels * names_.size());
  converter_->run(rgb.data(), std::uint32_t(pixels), made.data());
  std::vector<double> percent(made.size());
  for (std::size_t i = 0; i < made.size(); ++i) percent[i] = std::round(made[i] * 10000.0 / 65535) / 100;
  return percent;
}

std::vector<std::vector<double>> colors_made::neutral_ramps() const {
  std::vector<std::uint16_t> grays;
  for (unsigned level = 0; level < 256; ++level) grays.insert(grays.end(), 3, std::uint16_t(level * 257));
  const std::vector<double> made = of(grays);
  std::vector<std::vector<double>> ramps(names_.size());
  for (std::size_t i = 0; i < made.size(); ++i) ramps[i % names_.size()].push_back(made[i]);
  return ramps;
}

}  // namespace vrk::tool
