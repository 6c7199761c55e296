// Samples as look-up tables are entered by them.
#pragma once

#include "base/samples.h"

namespace vrk {

// Bits of the index that a sample of so many bits becomes: 8-bit samples are taken whole, of 16-bit ones the top ten
// bits.
template <int bits>
consteval int index_bits() = delete;
template <>
consteval int index_bits<8>() {
  return 8;
}
template <>
consteval int index_bits<16>() {
  return 10;
}

template <int bits>
u32 load_index(const u8* sample) {
  return rescale<bits, index_bits<bits>()>(load_sample<sample_of<bits>>(sample));
}

// How many indexes there are.
constexpr u32 index_count(int bits) { return 1u << (bits == 16 ? index_bits<16>() : index_bits<8>()); }

}  // namespace vrk
