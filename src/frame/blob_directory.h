// The parameter blob ("CTSI"): a header, a directory of tagged entries, and their data. What every look-up shares.
#pragma once

#include <optional>

#include "base/byte_view.h"
#include "base/tag.h"
#include "vrk.h"

namespace vrk {

struct blob_header {
  bool c_class;  // the class byte is "C"; the converters' look-ups choose by it
};

struct blob_entry {
  u32 offset;  // of the data, from the blob's first byte; not yet known to lie inside the blob
  u32 length;  // in bytes
};

// `type` and `newest` are the blob type and the highest version that the look-up takes. The directory is not looked at.
std::optional<blob_header> blob_check_header(byte_view blob, u32 type, u32 newest);

// The first entry of that tag in stored order; none when the directory is empty or runs past the blob.
std::optional<blob_entry> blob_find_entry(byte_view blob, u32 wanted);
bool blob_has_entry(byte_view blob, u32 wanted);

// The rest of a look-up once its tag is known: finds the entry, copies its data when `ref` has a destination, and sets
// the length. Returns 1, or 0 with nothing written.
u32 blob_fetch(byte_view blob, u32 wanted, vrk_table_ref& ref);

// What every look-up asks of its first four arguments, before anything is read or written.
inline bool blob_arguments_usable(u32 blob_size, const void* blob, const vrk_table_ref* ref, u16 family) {
  return blob != nullptr && blob_size != 0 && ref != nullptr && family <= 1;
}

// A tag from the family's letter (0 "H", 1 "X") and the three characters behind it.
constexpr u32 family_tag(u16 family, u32 rest) { return u32(family == 0 ? 'H' : 'X') << 24 | rest; }
constexpr u32 family_tag(u16 family, const char (&rest)[4]) {
  return family_tag(family, u32(u8(rest[0])) << 16 | u32(u8(rest[1])) << 8 | u32(u8(rest[2])));
}
static_assert(family_tag(1, "PP ") == tag("XPP "));

}  // namespace vrk
