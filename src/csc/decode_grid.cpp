#include "csc/decode_grid.h"

#include <bit>

#include "base/samples.h"

namespace vrk {
namespace {

// Reads a bit stream, most significant bit first. Behind its end it reads zeros and is no longer `ok`.
class bit_reader {
 public:
  bit_reader(const u8* data, u64 bytes) : at_(data), end_(data + bytes) {}

  u32 read(u32 bits) {  // at most 16
    refill(bits);
    const u32 value = u32(ahead_ >> 1 >> (63 - bits));
    skip(bits);
    return value;
  }

  // Skips zeros up to the next one, and that one; but never more than `limit` zeros. How many zeros there were.
  u32 read_zeros(u32 limit) {
    refill(limit);
    const u32 zeros = u32(std::countl_zero(ahead_));
    if (zeros >= limit) {
      skip(limit);
      return limit;
    }
    skip(zeros + 1);
    return zeros;
  }

  bool ok() const { return ok_; }

 private:
  void refill(u32 bits) {
    if (held_ >= bits) return;
    for (; held_ <= 56 && at_ != end_; held_ += 8) ahead_ |= u64(*at_++) << (56 - held_);
  }

  void skip(u32 bits) {
    ok_ = ok_ && bits <= held_;
    held_ = bits <= held_ ? held_ - bits : 0;
    ahead_ <<= bits;
  }

  const u8* at_;
  const u8* end_;
  u64 ahead_ = 0;  // the next bits, from the top down; zeros below those held
  u32 held_ = 0;
  bool ok_ = true;
};

// Differences by their prefix: row z has z zeros and then a one, the last row just three zeros.
struct delta_code {
  u32 payload_bits;
  u32 split;         // payloads below it
  i32 below, above;  // stand for payload - below, the others for payload - above
};

constexpr delta_code delta8_codes[4] = {{5, 0, 0, 16}, {6, 48, 64, 32}, {9, 0, 0, 256}, {0, 0, 0, 0}};
constexpr delta_code delta10_codes[4] = {{7, 0, 0, 32}, {0, 0, 0, 0}, {8, 160, 192, 64}, {11, 0, 0, 1024}};

template <int bits, int work>
void decode_packed(bit_reader stream, const grid_format& format, u64 points, u8* out) {
  for (; points != 0; --points, out += format.stored * sizeof(sample_of<work>)) {
    for (u32 t = 0; t < format.channels; ++t) {
      store_sample(out + format.place[t] * sizeof(sample_of<work>), rescale<bits, work>(stream.read(bits)));
    }
  }
}

// Plane after plane without realignment. A plane opens with a plain sample; every further one is the sample before it
// minus a coded difference.
template <int bits, int work>
bool decode_delta(bit_reader stream, const grid_format& format, u64 points, u8* out) {
  const delta_code* const codes = bits == 8 ? delta8_codes : delta10_codes;
  for (u32 plane = 0; plane < format.channels; ++plane) {
    u8* at = out + plane * sizeof(sample_of<work>);
    i32 sample = i32(stream.read(bits));
    for (u64 point = 0; point < points; ++point, at += format.stored * sizeof(sample_of<work>)) {
      if (point != 0) {
        const delta_code& code = codes[stream.read_zeros(3)];
        const u32 payload = stream.read(code.payload_bits);
        sample -= i32(payload) - (payload < code.split ? code.below : code.above);
        if (sample < 0 || sample >= 1 << bits || !stream.ok()) return false;
      }
      store_sample(at, rescale<bits, work>(u32(sample)));
    }
  }
  return stream.ok();
}

template <int work>
bool decode(bit_reader stream, const grid_storage& storage, const grid_format& format, u64 points, u8* out) {
  if (storage.delta) {
    return storage.bits == 8 ? decode_delta<8, work>(stream, format, points, out)
                             : decode_delta<10, work>(stream, format, points, out);
  }
  if (storage.bits == 16) decode_packed<16, work>(stream, format, points, out);
  if (storage.bits == 12) decode_packed<12, work>(stream, format, points, out);
  if (storage.bits == 10) decode_packed<10, work>(stream, format, points, out);
  if (storage.bits == 8) decode_packed<8, work>(stream, format, points, out);
  return true;
}

}  // namespace

bool decode_grid(byte_view& image, u64 pos, const grid_storage& storage, const grid_format& format, u64 points,
                 bool prec12, u8* out) {
  // A packed grid must lie in the table with its whole tail; a delta stream may use all that is left.
  if (!image.take(pos, storage.delta ? 0 : packed_grid_bytes(storage.bits, points * format.channels))) return false;
  const bit_reader stream(image.at(pos), image.size() - pos);
  return prec12 ? decode<12>(stream, storage, format, points, out) : decode<8>(stream, storage, format, points, out);
}

}  // namespace vrk
