#include "kit/profiles/link_table.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>

#include "kit/profiles/grid_axis.h"

namespace vrk::profiles {
namespace {

// Bits that an encoding keeps of a sample.
unsigned bits_of(kit::grid_encoding encoding) {
  switch (encoding) {
    case kit::grid_encoding::raw16:
      return 16;
    case kit::grid_encoding::packed12:
      return 12;
    case kit::grid_encoding::packed10:
    case kit::grid_encoding::delta10:
      return 10;
    case kit::grid_encoding::raw8:
    case kit::grid_encoding::delta8:
      return 8;
  }
  return 16;
}

// The samples as a handle will know them.
class stored_samples {
 public:
  explicit stored_samples(const table_form& form)
      : bits_(std::min(bits_of(form.encoding), form.precision)),
        half_step_(std::ldexp(0.5, int(bits_) - int(form.precision))) {}

  // Interpolation cuts what is below a step of the working precision: half a step on average.
  unsigned code_of(unsigned sample) const {
    const double exact = double(sample) * full() / 65535;
    if (exact < 0.5) return 0;
    return std::min(full(), unsigned(exact + 0.5 + half_step_));
  }

  unsigned full() const { return (1U << bits_) - 1; }

  // 16 bits whose top bits are the code.
  std::uint16_t widened(unsigned code) const { return std::uint16_t(code << (16 - bits_) | code >> (2 * bits_ - 16)); }

 private:
  unsigned bits_;
  double half_step_;
};

// Takes steps off the largest inks until their total is at most `most`; off black, the first, when no other is left.
void lower(std::span<unsigned> codes, unsigned most) {
  unsigned total = std::accumulate(codes.begin(), codes.end(), 0U);
  for (; total > most; --total) {
    unsigned& largest = *std::max_element(codes.begin() + 1, codes.end());
    --(largest != 0 ? largest : codes.front());
  }
}

}  // namespace

kit::color_table link_table(const color_link& link, const table_form& form) {
  if (form.encoding == (link.channels() == 3 ? kit::grid_encoding::delta10 : kit::grid_encoding::delta8)) {
    throw profile_error("Encoding delta8 is for tables to RGB, delta10 for tables to inks");
  }
  const kit::axis_positions axis = axis_for(link, form.points);
  const stored_samples stored(form);
  const unsigned channels = link.channels();
  kit::color_grid grid{.points = form.points, .channels = channels};
  for (const std::uint16_t r : axis) {
    const samples slice = link.convert(slice_of(r, axis));
    grid.samples.insert(grid.samples.end(), slice.begin(), slice.end());
  }
  std::array<unsigned, 6> codes{};
  for (auto point = grid.samples.begin(); point != grid.samples.end(); point += channels) {
    for (unsigned c = 0; c < channels; ++c) codes[c] = stored.code_of(point[c]);
    if (link.ink_limit()) lower(std::span(codes).first(channels), unsigned(*link.ink_limit() / 100 * stored.full()));
    for (unsigned c = 0; c < channels; ++c) point[c] = stored.widened(codes[c]);
  }
  return {.encoding = form.encoding, .axes = {axis, axis, axis}, .grid = std::move(grid)};
}

}  // namespace vrk::profiles
