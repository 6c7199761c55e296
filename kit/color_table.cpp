#include "kit/color_table.h"

#include <array>
#include <span>

#include "kit/bit_writer.h"
#include "kit/delta_stream.h"

namespace vrk::kit {
namespace {

// The order of the samples of a point in the table, as indices in grid order. Delta encodings keep grid order.
std::span<const std::uint8_t> table_sample_order(unsigned channels) {
  static constexpr std::array<std::uint8_t, 3> rgb{0, 1, 2};
  static constexpr std::array<std::uint8_t, 4> cmyk{1, 2, 3, 0};
  static constexpr std::array<std::uint8_t, 6> c5m6yk{1, 4, 2, 5, 3, 0};
  if (channels == 4) return cmyk;
  if (channels == 6) return c5m6yk;
  return std::span(rgb).first(channels < 3 ? channels : 3);
}

// The top `bits` bits of every sample, back to back.
void put_packed(bytes& out, const color_grid& grid, unsigned bits) {
  bit_writer stream(out);
  const std::span<const std::uint8_t> order = table_sample_order(grid.channels);
  for (std::size_t point = 0; point + grid.channels <= grid.samples.size(); point += grid.channels) {
    for (const std::size_t channel : order) stream.put(bits, grid.samples[point + channel] >> (16u - bits));
  }
  const std::size_t samples = grid.samples.size();
  if (bits == 12 && samples % 2 != 0) stream.put(bits, 0);  // 12-bit fields come in pairs
  stream.align();
}

void put_grid(bytes& out, const color_grid& grid, grid_encoding encoding, unsigned delta_codes_unused) {
  switch (encoding) {
    case grid_encoding::raw16:
      return put_packed(out, grid, 16);
    case grid_encoding::packed12:
      return put_packed(out, grid, 12);
    case grid_encoding::packed10:
      return put_packed(out, grid, 10);
    case grid_encoding::raw8:
      return put_packed(out, grid, 8);
    case grid_encoding::delta10:
      return put_delta_stream(out, grid, 10, delta_codes_unused);
    case grid_encoding::delta8:
      return put_delta_stream(out, grid, 8, delta_codes_unused);
  }
}

}  // namespace

axis_positions even_axis(unsigned points) {
  const unsigned cells = points < 2 ? 1 : points - 1;
  axis_positions axis(points);
  for (unsigned i = 0; i < points; ++i) axis[i] = std::uint16_t((255 * i + cells / 2) / cells * 257);
  return axis;
}

bytes color_table::encode() const {
  bytes out;
  put_text(out, magic.value_or(grid.channels == 3 ? "csc1" : "csc2"));
  put_text(out, version);
  put8(out, in_channels);
  put8(out, out_channels.value_or(grid.channels));
  put8(out, points.value_or(grid.points));
  put8(out, encoding_byte.value_or(unsigned(encoding)));
  for (const axis_positions& axis : axes) {
    for (const unsigned position : axis.empty() ? even_axis(grid.points) : axis) put_be16(out, position);
  }
  put_grid(out, grid, encoding, delta_codes_unused);
  return out;
}

bytes subtype_table(std::string_view subtype) {
  bytes out;
  put_text(out, "csc1");
  put_text(out, subtype);
  return out;
}

}  // namespace vrk::kit
