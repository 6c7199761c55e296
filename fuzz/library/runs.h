// Runs of pixels through the stages whose transforms only read their handle.
#pragma once

#include "fuzz/library/handle.h"

namespace vrk::fuzz {

// The bytes of `pattern` over and over, or counted ones.
inline void fill(const exact_memory& memory, byte_span pattern, unsigned seed) {
  std::uint8_t* at = memory.data();
  if (pattern.empty()) {
    for (std::size_t i = 0; i < memory.size(); ++i) {
      seed = seed * 1103515245 + 12345;
      at[i] = std::uint8_t(seed >> 16);
    }
    return;
  }
  for (std::size_t i = 0, from = 0; i < memory.size(); ++i, from = from + 1 == pattern.size() ? 0 : from + 1) {
    at[i] = pattern[from];
  }
}

// Mostly short; now and then longer than what kernels do at a time.
inline std::uint32_t pixels_of_run(input& in) {
  const std::uint32_t n = in.u8();
  return n < 200 ? n % 50 : n < 245 ? n : 100 * (n - 243);
}

struct pixel_bytes {
  std::uint32_t in, out;
  bool masked = false;  // the transform takes a mask
};

// transform(handle, src, mask, pixel_count, dst) on a whole run, and on its pieces, and in place: the same bytes each
// time, and the handle as it was.
template <class Transform>
void try_runs(input& in, byte_span pixels, const handle& h, pixel_bytes widths, Transform transform) {
  const std::uint64_t built = h.digest();
  const std::uint32_t count = pixels_of_run(in), choices = in.u8();
  const exact_memory src(std::size_t{count} * widths.in, choices & 1), mask((count + 7) / 8, choices >> 1 & 1);
  const exact_memory whole(std::size_t{count} * widths.out, choices >> 2 & 1);
  fill(src, pixels, choices);
  fill(mask, pixels.subspan(pixels.size() / 2), choices);
  const std::uint8_t* const bits = widths.masked && (choices & 8) != 0 ? mask.data() : nullptr;
  const std::uint32_t done = transform(h.get(), src.data(), bits, count, whole.data());

  const exact_memory pieces(whole.size(), choices >> 4 & 1);
  for (std::uint32_t at = 0; at < count;) {
    const std::uint32_t piece = std::min(count - at, 8 * (1 + in.u8() % 8u));
    const exact_memory part(src.contents().subspan(std::size_t{at} * widths.in, std::size_t{piece} * widths.in), 1);
    const exact_memory out(std::size_t{piece} * widths.out, at % 2);
    const std::uint8_t* const some = bits == nullptr ? nullptr : bits + at / 8;
    require(transform(h.get(), part.data(), some, piece, out.data()) == done, "pieces go as the whole run");
    std::memcpy(pieces.data() + std::size_t{at} * widths.out, out.data(), out.size());
    at += piece;
  }
  if (whole.size() != 0) {
    require(std::memcmp(pieces.data(), whole.data(), whole.size()) == 0, "pieces give the bytes of the whole run");
  }
  if ((choices & 32) != 0 && widths.out <= widths.in) {
    const exact_memory apart(src.contents().first(whole.size()), 0);  // some bytes are left as they were
    transform(h.get(), src.data(), bits, count, apart.data());
    transform(h.get(), src.data(), bits, count, src.data());
    require(apart.size() == 0 || std::memcmp(src.data(), apart.data(), apart.size()) == 0, "in place the same bytes");
  }
  require(h.digest() == built, "a transform only reads its handle");
}

}  // namespace vrk::fuzz
