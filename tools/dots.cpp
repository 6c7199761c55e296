#include "tools/dots.h"

#include <algorithm>

#include "kit/ink_model.h"

namespace vrk::tool {
namespace {

constexpr std::size_t largest_palette = 4096;

template <unsigned bits>
void unpack(const std::uint8_t* packed, std::vector<std::uint8_t>& codes) {
  constexpr unsigned per_byte = 8 / bits, mask = (1u << bits) - 1;
  for (std::size_t x = 0; x < codes.size(); ++x) {
    const std::size_t shift = (per_byte - 1 - x % per_byte) * bits;
    codes[x] = std::uint8_t(packed[x / per_byte] >> shift & mask);
  }
}

light operator*(const light& a, const light& b) { return {a[0] * b[0], a[1] * b[1], a[2] * b[2]}; }

// The light that comes back through `ink`, a share of the full ink of one plane.
light through(std::size_t plane, double ink) {
  std::array<double, 6> inks{};
  inks[plane] = ink;
  const kit::linear_rgb color = kit::print_color(inks);
  return {float(color[0]), float(color[1]), float(color[2])};
}

}  // namespace

dots::dots(const std::vector<plane_line>& planes, std::uint32_t width) : index_(width), colors_(width) {
  for (const plane_line& p : planes) {
    planes_.push_back({std::vector<std::uint8_t>(width), p.ink, std::vector<std::uint64_t>(p.ink.size())});
  }
  palettes_.emplace_back();
  for (std::size_t p = 0; p < planes.size(); ++p) {
    const std::vector<double>& ink = planes[p].ink;
    if (palettes_.back().colors.size() * ink.size() > largest_palette) palettes_.push_back({p, p});
    palette& last = palettes_.back();
    std::vector<light> colors;
    for (const light& under : last.colors) {
      for (const double share : ink) colors.push_back(under * through(p, share));
    }
    last.colors = std::move(colors);
    last.end = p + 1;
  }
}

void dots::read_line(const std::vector<plane_line>& planes) {
  for (std::size_t p = 0; p < planes.size(); ++p) {
    plane& to = planes_[p];
    const std::uint8_t* const packed = planes[p].packed.data();
    planes[p].bits == 1   ? unpack<1>(packed, to.codes)
    : planes[p].bits == 2 ? unpack<2>(packed, to.codes)
    : planes[p].bits == 4 ? unpack<4>(packed, to.codes)
                          : unpack<8>(packed, to.codes);
    for (std::size_t code = 1; code < to.counts.size(); ++code) {
      to.counts[code] += std::uint64_t(std::count(to.codes.begin(), to.codes.end(), std::uint8_t(code)));
    }
  }
  ++lines_;
  find_colors();
}

void dots::find_colors() {
  for (const palette& colors : palettes_) {
    std::fill(index_.begin(), index_.end(), std::uint16_t{0});
    for (std::size_t p = colors.first; p < colors.end; ++p) {
      const std::vector<std::uint8_t>& codes = planes_[p].codes;
      const auto base = unsigned(planes_[p].ink.size());
      for (std::size_t x = 0; x < codes.size(); ++x) index_[x] = std::uint16_t(index_[x] * base + codes[x]);
    }
    const bool on_paper = colors.first == 0;
    for (std::size_t x = 0; x < index_.size(); ++x) {
      const light& color = colors.colors[index_[x]];
      colors_[x] = on_paper ? color : colors_[x] * color;
    }
  }
}

double dots::coverage(std::size_t plane) const {
  double sum = 0;
  const auto& of = planes_[plane];
  for (std::size_t code = 0; code < of.counts.size(); ++code) sum += double(of.counts[code]) * of.ink[code];
  return lines_ == 0 ? 0 : sum / double(lines_) / double(index_.size());
}

}  // namespace vrk::tool
