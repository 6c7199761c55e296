#include "kit/color_table.h"

#include <array>
#include <span>

#include "kit/bit_writer.h"

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

// One code for differences: a prefix, then a payload that numbers the differences of one or two ranges.
struct delta_code {
  unsigned prefix, prefix_bits, payload_bits;
  int first, last;             // first range
  int first2 = 0, last2 = -1;  // second range, empty by default
};

// Shortest first.
constexpr std::array<delta_code, 4> delta8_codes{{
    {0b000, 3, 0, 0, 0},
    {0b1, 1, 5, -16, 15},
    {0b01, 2, 6, -64, -17, 16, 31},
    {0b001, 3, 9, -256, 255},
}};
constexpr std::array<delta_code, 4> delta10_codes{{
    {0b01, 2, 0, 0, 0},
    {0b1, 1, 7, -32, 95},
    {0b001, 3, 8, -192, -33, 96, 191},
    {0b000, 3, 11, -1024, 1023},
}};

void put_difference(bit_writer& stream, std::span<const delta_code> codes, int d) {
  for (const delta_code& code : codes) {
    const bool in_first = code.first <= d && d <= code.last;
    if (!in_first && (d < code.first2 || d > code.last2)) continue;
    stream.put(code.prefix_bits, code.prefix);
    const int payload = in_first ? d - code.first : d - code.first2 + (code.last - code.first + 1);
    if (code.payload_bits != 0) stream.put(code.payload_bits, unsigned(payload));
    return;
  }
}

// Plane after plane. The first sample is stored as it is; every other is the one before minus a coded difference.
void put_delta(bytes& out, const color_grid& grid, unsigned bits, std::span<const delta_code> codes) {
  bit_writer stream(out);
  for (std::size_t channel = 0; channel < grid.channels; ++channel) {
    int previous = -1;
    for (std::size_t i = channel; i < grid.samples.size(); i += grid.channels) {
      const int sample = grid.samples[i] >> (16u - bits);
      if (previous < 0) {
        stream.put(bits, unsigned(sample));
      } else {
        put_difference(stream, codes, previous - sample);
      }
      previous = sample;
    }
  }
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
      return put_delta(out, grid, 10, std::span(delta10_codes).subspan(delta_codes_unused));
    case grid_encoding::delta8:
      return put_delta(out, grid, 8, std::span(delta8_codes).subspan(delta_codes_unused));
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
