// Four-character codes: magics, versions, and the tags of parameter blobs.
#pragma once

#include "base/integers.h"

namespace vrk {

// A code as the big-endian number that tables and blobs are compared by.
constexpr u32 tag(const char (&text)[5]) {
  return u32(u8(text[0])) << 24 | u32(u8(text[1])) << 16 | u32(u8(text[2])) << 8 | u32(u8(text[3]));
}

constexpr u32 version_001z = tag("001z");  // the newest version that most tables may have
constexpr u32 version_002z = tag("002z");

}  // namespace vrk
