#include "tools/print/dots.h"

#include <algorithm>
#include <numeric>

namespace vrk::tool {
namespace {

constexpr std::size_t largest_palette = 4096, largest_single_palette = 65536;

template <unsigned bits>
void unpack(const std::uint8_t* packed, std::vector<std::uint8_t>& codes) {
  constexpr unsigned per_byte = 8 / bits, mask = (1u << bits) - 1;
  for (std::size_t x = 0; x < codes.size(); ++x) {
    const std::size_t shift = (per_byte - 1 - x % per_byte) * bits;
    codes[x] = std::uint8_t(packed[x / per_byte] >> shift & mask);
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

const std::vector<light>& dots::colors() {
  if (palettes_.empty()) compute_colors();
  for (const palette& colors : palettes_) {
    std::fill(index_.begin(), index_.end(), std::uint16_t{0});
    for (std::size_t p = colors.first; p < colors.end; ++p) {
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
