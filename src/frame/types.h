// Fixed-width integers and the check codes that every stage uses.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vrk {

using u8 = std::uint8_t;
using u16 = std::uint16_t;
using u32 = std::uint32_t;
using u64 = std::uint64_t;
using i8 = std::int8_t;
using i16 = std::int16_t;
using i32 = std::int32_t;
using i64 = std::int64_t;

// Why a table was refused. Create functions report every value but `ok` as 0; the codes never leave the library.
enum class check : i8 {
  ok = 0,
  wrong_magic = -1,        // also: an axis that does not increase strictly
  too_new = -2,            // version above the stage's maximum
  malformed = -3,          // shorter than its header announces, or a header byte out of range
  unusable_argument = -4,  // an argument that this table does not allow
};

// A four-character code as the big-endian number that tables and blobs are compared by.
constexpr u32 tag(const char (&text)[5]) {
  return u32(u8(text[0])) << 24 | u32(u8(text[1])) << 16 | u32(u8(text[2])) << 8 | u32(u8(text[3]));
}

constexpr u32 version_001z = tag("001z");  // the newest version that most tables may have
constexpr u32 version_002z = tag("002z");

// Pixels and table entries lie next to each other without gaps, so sizes go through 64 bits and are narrowed once.
// 0 (the result that means failure) for a size that 32 bits cannot tell.
constexpr u32 size_or_0(u64 bytes) { return bytes <= 0xFFFFFFFFu ? u32(bytes) : 0; }

}  // namespace vrk
