#include "tools/print/dots.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <numeric>

namespace vrk::tool {
namespace {

constexpr std::size_t largest_palette = 4096, largest_single_palette = 65536;

// The codes in every byte of packed ones.
template <unsigned bits>
constexpr auto codes_of_bytes = [] {
  constexpr unsigned per_byte = 8 / bits, mask = (1u << bits) - 1;
  std::array<std::array<std::uint8_t, per_byte>, 256> all{};
  for (unsigned byte = 0; byte < all.size(); ++byte) {
    for (unsigned x = 0; x < per_byte; ++x) all[byte][x] = std::uint8_t(byte >> (per_byte - 1 - x) * bits & mask);
  }
  return all;
}();

template <unsigned bits>
void unpack(const std::uint8_t* packed, std::vector<std::uint8_t>& codes) {
  constexpr std::size_t per_byte = 8 / bits;
  std::uint8_t* to = codes.data();
  std::size_t left = codes.size();
  for (; left >= per_byte; left -= per_byte, to += per_byte) {
    std::memcpy(to, codes_of_bytes<bits>[*packed++].data(), per_byte);
  }
  if (left != 0) std::memcpy(to, codes_of_bytes<bits>[*packed].data(), left);
}

// color_of: by the number of a dot in the row
template <class Color>
void add_up(std::size_t dots, std::size_t across, std::vector<light>& sums, const Color& color_of) {
  std::size_t x = 0;
  for (light& to : sums) {
    auto [red, green, blue] = to;
    for (const std::size_t end = std::min(dots, x + across); x < end; ++x) {
      const light& color = color_of(x);
      red += color[0], green += color[1], blue += color[2];
    }
    to = {red, green, blue};
  }
}

}  // namespace

dots::dots(const std::vector<plane_format>& planes, std::uint32_t width, const dot_colors& look) : look_(look) {
  for (const plane_format& plane : planes) {
    scale_.x = std::lcm(scale_.x, plane.scale.x);
    scale_.y = std::lcm(scale_.y, plane.scale.y);
  }
  for (const plane_format& plane : planes) {
    planes_.push_back({&plane, scale_.x / plane.scale.x, std::vector<std::uint8_t>(std::size_t{width} * plane.scale.x),
                       std::vector<std::uint64_t>(plane.levels())});
  }
  index_.resize(std::size_t{width} * scale_.x);
  colors_.resize(index_.size());
  const std::size_t most = look_.multiply() ? largest_palette : largest_single_palette;
  std::size_t first = 0, colors = 1;
  for (std::size_t p = 0; p < planes.size(); ++p) {
    if (colors * planes[p].levels() > most) {
      if (!look_.multiply()) return;
      add_palette(first, p, colors);
      first = p, colors = 1;
    }
    colors *= planes[p].levels();
  }
  add_palette(first, planes.size(), colors);
}

void dots::add_palette(std::size_t first, std::size_t end, std::size_t colors) {
  palette& added = palettes_.emplace_back(palette{first, end, {}});
  std::vector<double> shares(end - first);
  for (std::size_t index = 0; index < colors; ++index) {
    std::size_t codes = index;
    for (std::size_t p = end; p-- > first; codes /= planes_[p].format->levels()) {
      shares[p - first] = planes_[p].format->ink[codes % planes_[p].format->levels()];
    }
    added.colors.push_back(look_.of(shares, first));
  }
}

void dots::read_row(const std::uint8_t* packed, unsigned row) {
  for (std::size_t p = 0; p < planes_.size(); ++p) {
    plane& to = planes_[p];
    const plane_format& format = *to.format;
    const std::uint8_t* const from = packed_line(packed, row, p);
    switch (format.bits) {
      case 1:
        unpack<1>(from, to.codes);
        break;
      case 2:
        unpack<2>(from, to.codes);
        break;
      case 4:
        unpack<4>(from, to.codes);
        break;
      default:
        unpack<8>(from, to.codes);
    }
    if (format.bits == 1) {  // one fast count
      to.counts.back() += std::uint64_t(std::count(to.codes.begin(), to.codes.end(), std::uint8_t{1}));
    } else {
      for (const std::uint8_t code : to.codes) ++to.counts[code];
    }
  }
  ++rows_;
}

void dots::read_index(const palette& of) {
  std::fill(index_.begin(), index_.end(), std::uint16_t{0});
  for (std::size_t p = of.first; p < of.end; ++p) {
    const std::vector<std::uint8_t>& codes = planes_[p].codes;
    const unsigned base = planes_[p].format->levels(), repeat = planes_[p].repeat_x;
    const auto append = [base](std::uint16_t index, std::uint8_t code) { return std::uint16_t(index * base + code); };
    if (repeat == 1) {
      std::transform(index_.begin(), index_.end(), codes.begin(), index_.begin(), append);
      continue;
    }
    std::uint16_t* index = index_.data();
    for (const std::uint8_t code : codes) {
      for (unsigned i = 0; i < repeat; ++i, ++index) *index = append(*index, code);
    }
  }
}

const std::vector<light>& dots::colors() {
  if (palettes_.empty()) compute_colors();
  for (const palette& colors : palettes_) {
    read_index(colors);
    const light* const of_index = colors.colors.data();
    const auto color_of = [of_index](std::uint16_t index) { return of_index[index]; };
    if (colors.first == 0) {
      std::transform(index_.begin(), index_.end(), colors_.begin(), color_of);
    } else {
      std::transform(index_.begin(), index_.end(), colors_.begin(), colors_.begin(),
                     [&](std::uint16_t index, const light& below) { return below * color_of(index); });
    }
  }
  return colors_;
}

// With one palette, as most prints have, no dot's colour is stored.
void dots::add_light(unsigned across, std::vector<light>& sums) {
  if (palettes_.size() == 1) {
    read_index(palettes_[0]);
    const light* const of_index = palettes_[0].colors.data();
    const std::uint16_t* const index = index_.data();
    add_up(index_.size(), across, sums, [=](std::size_t x) -> const light& { return of_index[index[x]]; });
  } else {
    const std::vector<light>& row = colors();
    add_up(row.size(), across, sums, [&](std::size_t x) -> const light& { return row[x]; });
  }
}

void dots::compute_colors() {
  std::vector<double> shares(planes_.size());
  for (std::size_t x = 0; x < colors_.size(); ++x) {
    for (std::size_t p = 0; p < planes_.size(); ++p) {
      shares[p] = planes_[p].format->ink[planes_[p].codes[x / planes_[p].repeat_x]];
    }
    colors_[x] = look_.of(shares);
  }
}

double dots::coverage(std::size_t plane) const {
  const struct plane& of = planes_[plane];
  double sum = 0;
  for (std::size_t code = 0; code < of.counts.size(); ++code) sum += double(of.counts[code]) * of.format->ink[code];
  return rows_ == 0 ? 0 : sum / double(rows_) / double(of.codes.size());
}

}  // namespace vrk::tool
