#include "tools/print/dots.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace vrk::tool {
namespace {

constexpr std::size_t largest_palette = 4096, largest_single_palette = 65536;

// color_of: by the number of a dot in the row. The compiler unrolls loops over `fixed` dots; 0: over `across`.
template <std::size_t fixed, class Color>
void add_squares(std::size_t dots, std::size_t across, std::vector<light>& sums, const Color& color_of) {
  if constexpr (fixed != 0) across = fixed;
  std::size_t x = 0;
  for (light& to : sums) {
    light sum = to;
    if (dots - x >= across) {
      for (std::size_t i = 0; i < across; ++i) sum += color_of(x + i);
      x += across;
    } else {
      for (; x < dots; ++x) sum += color_of(x);
    }
    to = sum;
  }
}

template <class Color>
void add_up(std::size_t dots, std::size_t across, std::vector<light>& sums, const Color& color_of) {
  const auto with = [&]<std::size_t fixed>() { add_squares<fixed>(dots, across, sums, color_of); };
  switch (across) {  // pages at 300, 600 and 1200 dpi
    case 3:
      return with.template operator()<3>();
    case 5:
      return with.template operator()<5>();
    case 9:
      return with.template operator()<9>();
    default:
      with.template operator()<0>();
  }
}

}  // namespace

dots::dots(const std::vector<plane_format>& planes, std::uint32_t width, const dot_colors& look) : look_(look) {
  for (const plane_format& plane : planes) {
    scale_.x = std::lcm(scale_.x, plane.scale.x);
    scale_.y = std::lcm(scale_.y, plane.scale.y);
  }
  for (const plane_format& plane : planes) {
    const std::size_t dots = std::size_t{width} * plane.scale.x;
    planes_.push_back({&plane, scale_.x / plane.scale.x, std::vector<std::uint8_t>(dots), {plane.bits, dots}});
  }
  colors_.resize(std::size_t{width} * scale_.x);
  index_.resize(colors_.size() + weighted_codes::most_dots);
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
  palette& added = palettes_.emplace_back(palette{first, end, true, {}, {}});
  std::size_t weight = colors;
  for (std::size_t p = first; p < end; ++p) {
    weight /= planes_[p].format->levels();
    const unsigned bits = planes_[p].format->bits;
    added.digits.emplace_back(bits, unsigned(weight));
    added.alike = added.alike && bits == added.digits[0].bits() && planes_[p].repeat_x == 1;
  }
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
    planes_[p].packed = packed_line(packed, row, p);
    planes_[p].counts.add_row(planes_[p].packed);
  }
  ++rows_;
}

const std::vector<std::uint8_t>& dots::codes(std::size_t plane) {
  struct plane& of = planes_[plane];
  unpack_codes(of.packed, of.format->bits, of.codes);
  return of.codes;
}

void dots::read_index(const palette& of) {
  std::fill(index_.begin(), index_.end(), weighted_codes::number{0});
  if (of.alike) {
    std::array<const std::uint8_t*, plane_names.size()> packed{};
    for (std::size_t p = of.first; p < of.end; ++p) packed[p - of.first] = planes_[p].packed;
    return weighted_codes::add(of.digits, packed.data(), colors_.size(), index_.data());
  }
  for (std::size_t p = of.first; p < of.end; ++p) {
    const plane& from = planes_[p];
    coarse_.assign(index_.size(), 0);
    weighted_codes::add(std::span(of.digits).subspan(p - of.first, 1), &from.packed, from.codes.size(), coarse_.data());
    for (std::size_t x = 0; x < colors_.size(); ++x) index_[x] += coarse_[x / from.repeat_x];
  }
}

const std::vector<light>& dots::colors() {
  if (palettes_.empty()) compute_colors();
  for (const palette& colors : palettes_) {
    read_index(colors);
    const light* const of_index = colors.colors.data();
    for (std::size_t x = 0; x < colors_.size(); ++x) {
      const light& color = of_index[index_[x]];
      colors_[x] = colors.first == 0 ? color : colors_[x] * color;
    }
  }
  return colors_;
}

// With one palette, as most prints have, no dot's colour is stored.
void dots::add_light(unsigned across, std::vector<light>& sums) {
  if (palettes_.size() == 1) {
    read_index(palettes_[0]);
    const light* const of_index = palettes_[0].colors.data();
    const weighted_codes::number* const index = index_.data();
    add_up(colors_.size(), across, sums, [=](std::size_t x) -> const light& { return of_index[index[x]]; });
  } else {
    const std::vector<light>& row = colors();
    add_up(row.size(), across, sums, [&](std::size_t x) -> const light& { return row[x]; });
  }
}

void dots::compute_colors() {
  std::vector<double> shares(planes_.size());
  for (std::size_t p = 0; p < planes_.size(); ++p) codes(p);
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
  for (unsigned code = 0; code < of.format->levels(); ++code) sum += double(of.counts.of(code)) * of.format->ink[code];
  return rows_ == 0 ? 0 : sum / double(rows_) / double(of.codes.size());
}

}  // namespace vrk::tool
