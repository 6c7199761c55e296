// The one way to read a table image: big-endian reads that cannot run past its end.
#pragma once

#include <cstring>

#include "base/integers.h"

namespace vrk {

// A read outside the image gives 0 and marks the view: read what the header announces, then ask `ok` once.
// A hot decoder takes its whole range first and then reads unchecked through `at`.
class byte_view {
 public:
  byte_view(const void* data, u64 size) : data_(static_cast<const u8*>(data)), size_(data == nullptr ? 0 : size) {}

  u64 size() const { return size_; }
  bool ok() const { return ok_; }

  bool holds(u64 pos, u64 n) const { return n <= size_ && pos <= size_ - n; }
  bool take(u64 pos, u64 n) {
    const bool inside = holds(pos, n);
    ok_ = ok_ && inside;
    return inside;
  }

  u8 byte(u64 pos) { return take(pos, 1) ? data_[pos] : u8{0}; }
  u16 be16(u64 pos) { return take(pos, 2) ? raw16(pos) : u16{0}; }
  u32 be32(u64 pos) { return take(pos, 4) ? u32(raw16(pos)) << 16 | raw16(pos + 2) : 0; }

  const u8* at(u64 pos) const { return data_ + pos; }  // unchecked: only inside a range that was taken

 private:
  u16 raw16(u64 pos) const { return u16(data_[pos] << 8 | data_[pos + 1]); }

  const u8* data_;
  u64 size_;
  bool ok_ = true;
};

// Unchecked big-endian 16-bit read, for ranges that were taken.
inline u16 load_be16(const u8* p) { return u16(p[0] << 8 | p[1]); }

}  // namespace vrk
