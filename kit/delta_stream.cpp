#include "kit/delta_stream.h"

#include <array>
#include <span>

#include "kit/bit_writer.h"

namespace vrk::kit {
namespace {

// One code for differences: a prefix, then a payload that numbers the differences of one or two ranges.
struct delta_code {
  unsigned prefix, prefix_bits, payload_bits;
  int first, last;             // first range
  int first2 = 0, last2 = -1;  // second range, empty by default

  // The difference that a payload stands for.
  int difference(unsigned payload) const {
    const int in_first = first + int(payload);
    return in_first <= last ? in_first : first2 + in_first - last - 1;
  }
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

std::span<const delta_code> codes_for(unsigned bits) { return bits == 8 ? delta8_codes : delta10_codes; }

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

// Reads fields most significant bit first. Nothing is read once a field does not lie whole in the image.
class bit_source {
 public:
  bit_source(const bytes& image, std::uint64_t from) : image_(image), at_(8 * from) {}

  std::uint64_t byte() const { return at_ / 8; }

  std::optional<unsigned> take(unsigned width) {
    if (at_ + width > 8 * std::uint64_t{image_.size()}) return {};
    unsigned value = 0;
    for (; width != 0; --width, ++at_) value = value << 1 | (image_[std::size_t(at_ / 8)] >> (7 - at_ % 8) & 1U);
    return value;
  }

  // Every prefix is complete: some code has it after at most three bits.
  std::optional<int> take_difference(std::span<const delta_code> codes) {
    unsigned prefix = 0;
    for (unsigned prefix_bits = 1;; ++prefix_bits) {
      const std::optional<unsigned> bit = take(1);
      if (!bit) return {};
      prefix = prefix << 1 | *bit;
      for (const delta_code& code : codes) {
        if (code.prefix_bits != prefix_bits || code.prefix != prefix) continue;
        const std::optional<unsigned> payload = take(code.payload_bits);
        if (!payload) return {};
        return code.difference(*payload);
      }
    }
  }

 private:
  const bytes& image_;
  std::uint64_t at_;  // bits
};

}  // namespace

void put_delta_stream(bytes& out, const color_grid& grid, unsigned bits, unsigned codes_unused) {
  bit_writer stream(out);
  for (std::size_t channel = 0; channel < grid.channels; ++channel) {
    int previous = -1;
    for (std::size_t i = channel; i < grid.samples.size(); i += grid.channels) {
      const int sample = grid.samples[i] >> (16u - bits);
      if (previous < 0) {
        stream.put(bits, unsigned(sample));
      } else {
        put_difference(stream, codes_for(bits).subspan(codes_unused), previous - sample);
      }
      previous = sample;
    }
  }
  stream.align();
}

std::optional<delta_fault> first_delta_fault(const bytes& image, std::uint64_t from, unsigned planes, unsigned points,
                                             unsigned bits) {
  bit_source stream(image, from);
  for (unsigned plane = 0; plane < planes; ++plane) {
    int sample = 0;
    for (unsigned point = 0; point < points * points * points; ++point) {
      const std::uint64_t offset = stream.byte();
      if (point == 0) {
        const std::optional<unsigned> first = stream.take(bits);
        if (!first) return delta_fault{plane, point, offset};
        sample = int(*first);
        continue;
      }
      const std::optional<int> difference = stream.take_difference(codes_for(bits));
      if (!difference) return delta_fault{plane, point, offset};
      sample -= *difference;
      if (sample < 0 || sample >= 1 << bits) return delta_fault{plane, point, offset, sample};
    }
  }
  return {};
}

}  // namespace vrk::kit
