// Appends fields of any width to a byte string, most significant bit first.
#pragma once

#include "kit/bytes.h"

namespace vrk::kit {

class bit_writer {
 public:
  explicit bit_writer(bytes& out) : out_(out) {}

  // The low `width` bits (1 ... 16) of `value`.
  void put(unsigned width, unsigned value) {
    pending_ = pending_ << width | (value & ((1u << width) - 1));
    for (pending_bits_ += width; pending_bits_ >= 8; pending_bits_ -= 8) put8(out_, pending_ >> (pending_bits_ - 8));
  }

  // Fills the last byte with zero bits.
  void align() {
    if (pending_bits_ != 0) put(8 - pending_bits_, 0);
  }

 private:
  bytes& out_;
  std::uint32_t pending_ = 0;  // its low pending_bits_ are not written yet
  unsigned pending_bits_ = 0;  // 0 ... 7 between calls
};

}  // namespace vrk::kit
