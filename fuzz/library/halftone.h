// Block calls of both halftones, in any order that the header allows.
#pragma once

#include "fuzz/library/runs.h"

namespace vrk::fuzz {

struct halftone_calls {
  decltype(&vrk_start_dither_block) start;
  decltype(&vrk_exec_dither) exec;
  decltype(&vrk_exec_ditherx) exec_array;
  decltype(&vrk_end_dither_block) end;
  decltype(&vrk_clear_ed_buf) clear;  // null: there is none
  bool start_refused_keeps_block;
};

// Lines of the produced planes as a caller makes them, of what the handle says of itself.
class halftone_lines {
 public:
  // k_used: an "edpr" table may leave K out, whose line then is not there.
  halftone_lines(const vrk_ht_info& info, bool k_used, std::uint32_t pixels, unsigned odd)
      : through_(!info.dot_expansion) {
    for (unsigned p = 0; p < info.plane_count; ++p) {
      if (p == 0 && !k_used) continue;
      const std::uint64_t bits =
          info.plane_bits[p] * std::uint64_t{info.dot_expansion ? info.plane_scale[p].scale_x : 1};
      for (unsigned y = 0; y < (info.dot_expansion ? info.plane_scale[p].scale_y : 1); ++y, ++count_) {
        line_[count_].emplace(std::size_t((bits * pixels + 7) / 8), odd & 1);
        at_[count_] = line_[count_]->data();
      }
    }
    first_ = k_used ? 0 : 1;
  }

  // As an array that holds no more pointers than there are lines, or as six arguments.
  std::uint32_t exec(const halftone_calls& calls, void* handle, const void* src, bool as_array) const {
    if (!as_array) {
      std::uint8_t* out[6]{};
      for (unsigned i = 0; i < count_ && i + first_ < 6; ++i) out[i + first_] = at_[i];
      return calls.exec(handle, src, out[0], out[1], out[2], out[3], out[4], out[5]);
    }
    const exact_memory array({reinterpret_cast<const std::uint8_t*>(at_), count_ * sizeof at_[0]}, 0);
    return calls.exec_array(handle, src, reinterpret_cast<std::uint8_t* const*>(array.data()));
  }

  unsigned count() const { return count_; }
  byte_span line(unsigned i) const { return line_[i]->contents(); }
  bool cells() const { return !through_; }

 private:
  bool through_;
  unsigned count_ = 0, first_ = 0;
  std::optional<exact_memory> line_[24];
  std::uint8_t* at_[24]{};
};

struct halftone_block {
  handle* h;
  vrk_ht_info info;
  bool k_used;
  std::uint32_t line_width, sample_bytes;
  std::uint32_t width = 0;  // of the block
  bool begun = false;
};

// One call, chosen by the numbers of the input.
inline void call_one(input& in, byte_span pixels, halftone_block& b, const halftone_calls& calls) {
  const unsigned call = in.u8();
  void* const at = b.h->get();
  if (call % 8 < 2) {
    const std::uint32_t x = in.u8(), width = (call & 128) != 0 ? b.line_width - x % (b.line_width + 1) : in.u8();
    const std::uint32_t from = (call & 64) != 0 ? x + 0xFFFFFF80u : x % (b.line_width + 1), line = in.u8();
    const bool fits = std::uint64_t{from} + width <= b.line_width;
    require(calls.start(at, width, from, (call & 32) != 0 ? 0u - line : line) == (fits ? 1u : 0u),
            "a block begins when it fits the line");
    if (fits) b.width = width;
    b.begun = fits || (b.begun && calls.start_refused_keeps_block);
  } else if (call % 8 == 2) {
    calls.end(at);
  } else if (call % 8 == 3 && calls.clear != nullptr) {
    calls.clear(at);
  } else if (b.begun) {
    const unsigned planes = b.k_used || b.info.plane_count > 1 ? b.info.plane_count : 0;
    const exact_memory src(std::size_t{b.width} * planes * b.sample_bytes, call >> 5 & 1);
    fill(src, pixels.subspan(pixels.size() * (call >> 3 & 3) / 4), call);
    const halftone_lines lines(b.info, b.k_used, b.width, call >> 6);
    const bool as_array = (call & 128) != 0 || (lines.cells() && call % 8 != 4);
    require(lines.exec(calls, at, src.data(), as_array) == (lines.cells() && !as_array ? 0u : 1u),
            "a line is done, but for cells in six arguments");
  }
}

}  // namespace vrk::fuzz
