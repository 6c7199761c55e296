#include "tools/page/light_levels.h"

#include "kit/srgb.h"

namespace vrk::tool {
namespace {

constexpr unsigned last_level = 65535;

}  // namespace

light_levels::light_levels(const image_reader& picture)
    : channels_(picture.channels()), bits_(picture.bits()), light_(std::size_t{1} << bits_) {
  const bool inks = channels_ == 4;
  const double full = double(light_.size() - 1);
  for (std::size_t i = 0; i < light_.size(); ++i) {
    light_[i] = float(inks ? double(i) / full : kit::srgb_to_linear(double(i) / full));
  }
  for (unsigned i = 0; i <= last_level; ++i) {
    const double light = double(i) / last_level, sample = (inks ? light : kit::linear_to_srgb(light)) * full;
    bits_ == 8 ? bytes_.push_back(std::uint8_t(sample + 0.5)) : samples_.push_back(float(sample));
  }
  if (bits_ == 16) samples_.push_back(samples_.back());
}

template <class Sample>
void light_levels::read_as(const Sample* samples, unsigned pixels, float* light) const {
  for (unsigned x = 0; x < pixels; ++x, samples += channels_) light[x] = light_[*samples];
}

void light_levels::read(const void* line, unsigned channel, unsigned pixels, float* light) const {
  bits_ == 8 ? read_as(static_cast<const std::uint8_t*>(line) + channel, pixels, light)
             : read_as(static_cast<const std::uint16_t*>(line) + channel, pixels, light);
}

void light_levels::write(const float* light, unsigned channel, unsigned pixels, void* line) const {
  if (bits_ == 8) {
    auto* to = static_cast<std::uint8_t*>(line) + channel;
    for (unsigned x = 0; x < pixels; ++x, to += channels_) *to = bytes_[unsigned(light[x] * last_level + 0.5F)];
    return;
  }
  auto* to = static_cast<std::uint16_t*>(line) + channel;
  for (unsigned x = 0; x < pixels; ++x, to += channels_) {
    const float at = light[x] * last_level;
    const auto below = unsigned(at);
    const float low = samples_[below], rest = at - float(below);
    *to = std::uint16_t(low + (samples_[below + 1] - low) * rest + 0.5F);
  }
}

}  // namespace vrk::tool
