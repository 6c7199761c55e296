// What every create and transform function promises, whatever the stage.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "kit/bytes.h"
#include "tests/guard.h"

namespace vrk::test {

// A create function with all its arguments but the memory.
using create_call = std::function<std::uint32_t(void* mem)>;

// A handle in fenced memory of the size that create asks for, `offset` past a 32-byte boundary. It must not show, not
// even in gaps between its tables, what the memory held.
class handle {
 public:
  explicit handle(const create_call& create, std::size_t offset = 4)
      : mem_(create(nullptr), offset), used_(create(mem_.data())) {
    EXPECT_NE(used_, 0u);
    EXPECT_LE(used_, mem_.contents().size());
    EXPECT_TRUE(mem_.fences_intact());
    fenced_block other(mem_.contents().size(), offset, 0x5A);
    EXPECT_EQ(create(other.data()), used_);
    const kit::bytes built = bytes(), again = other.bytes();
    EXPECT_TRUE(std::equal(built.begin(), built.end(), again.begin()));
  }

  void* get() { return mem_.data(); }
  std::uint32_t used() const { return used_; }
  std::size_t size() const { return mem_.contents().size(); }
  bool fences_intact() const { return mem_.fences_intact(); }
  kit::bytes bytes() const {
    kit::bytes built = mem_.bytes();
    built.resize(used_);
    return built;
  }

  // What transform(handle, src, dst) makes of samples that end at an unreadable page, at a fenced odd address: from an
  // even and an odd address, and, where it comes out no longer than it went in, in place. Bytes that it leaves alone
  // are 0xA5.
  template <class Transform>
  kit::bytes line(kit::bytes src, std::size_t dst_bytes, Transform transform) {
    const kit::bytes out = fenced_line(src, kit::bytes(dst_bytes, 0xA5), transform);
    const kit::bytes over(src.begin(), src.begin() + std::ptrdiff_t(std::min(dst_bytes, src.size())));
    src.push_back(0);
    EXPECT_EQ(fenced_line(src, kit::bytes(dst_bytes, 0xA5), transform), out) << "from the next address";
    if (over.size() == dst_bytes) {
      const auto in_place = [&](void* handle, auto* from, auto* to) {
        const std::uint32_t done = transform(handle, from, from);
        std::copy_n(from, dst_bytes, to);
        return done;
      };
      EXPECT_EQ(fenced_line(src, over, in_place), fenced_line(src, over, transform)) << "in place";
    }
    return out;
  }

 private:
  // What transform makes over the bytes of `over`. The handle must stay as it is.
  template <class Transform>
  kit::bytes fenced_line(const kit::bytes& src, const kit::bytes& over, Transform transform) {
    const kit::bytes built = mem_.bytes();
    guarded_copy in(src);
    fenced_block out(over.size(), 1);
    std::ranges::copy(over, out.data());
    EXPECT_EQ(transform(get(), in.data(), out.data()), 1u);
    EXPECT_TRUE(out.fences_intact() && mem_.fences_intact());
    EXPECT_EQ(built, mem_.bytes()) << "a transform only reads its handle";
    return out.bytes();
  }

  fenced_block mem_;
  std::uint32_t used_;
};

// What single bytes of a header are tried with: counts and bits of every sort, and neighbours of the characters of tags
// and versions.
inline constexpr std::uint8_t header_values[] = {0,  1,  2,   3,   4,   5,   6,   7,   8,   16,
                                                 17, 32, '0', '1', '2', '3', 'z', '{', 128, 255};

// Both calls refuse, and the build call writes nothing.
inline void expect_refused(const create_call& create, const std::string& what) {
  fenced_block mem(1 << 16);
  EXPECT_EQ(create(nullptr), 0u) << what;
  EXPECT_EQ(create(mem.data()), 0u) << what;
  EXPECT_TRUE(mem.untouched()) << what;
}

// A part of a handle: bytes right behind what comes before, then a section on the next 32-byte boundary.
struct layout_part {
  std::size_t packed, section;
};

// The size has room for every boundary at its worst; how much of it is used depends on the address.
inline void expect_layout(const create_call& create, const std::vector<layout_part>& layout) {
  std::size_t size = 0;
  for (const layout_part& part : layout) size += part.packed + 31 + part.section;
  EXPECT_EQ(create(nullptr), size);
  for (std::size_t offset = 0; offset < 32; ++offset) {
    std::size_t end = offset;
    for (const layout_part& part : layout) end = (end + part.packed + 31) / 32 * 32 + part.section;
    EXPECT_EQ(handle(create, offset).used(), end - offset) << "at " << offset;
  }
}

}  // namespace vrk::test
