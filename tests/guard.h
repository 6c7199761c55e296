// Hostile buffers, for the tests of every stage: images that end at an unreadable page, and handle memory at any
// address with guard bytes on both sides.
#pragma once

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <span>
#include <vector>

namespace vrk::test {

// A copy of some bytes whose end is the start of a page that nobody may touch: one byte read too far ends the program.
// `end()` is a pointer that may not be followed at all.
class guarded_copy {
 public:
  explicit guarded_copy(std::span<const std::uint8_t> bytes)
      : size_(bytes.size()), usable_((size_ + page - 1) / page * page) {
#ifdef _WIN32
    DWORD before;
    base_ = static_cast<std::uint8_t*>(VirtualAlloc(nullptr, usable_ + page, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    if (base_ == nullptr || !VirtualProtect(base_ + usable_, page, PAGE_NOACCESS, &before)) throw std::bad_alloc();
#else
    void* const base = mmap(nullptr, usable_ + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    base_ = static_cast<std::uint8_t*>(base);
    if (base == MAP_FAILED || mprotect(base_ + usable_, page, PROT_NONE) != 0) throw std::bad_alloc();
#endif
    if (size_ != 0) std::memcpy(data(), bytes.data(), size_);
  }
  guarded_copy(const guarded_copy&) = delete;
  guarded_copy& operator=(const guarded_copy&) = delete;
  ~guarded_copy() {
#ifdef _WIN32
    VirtualFree(base_, 0, MEM_RELEASE);
#else
    munmap(base_, usable_ + page);
#endif
  }

  std::uint8_t* data() { return end() - size_; }
  std::uint8_t* end() { return base_ + usable_; }
  std::uint32_t size() const { return std::uint32_t(size_); }

 private:
  static constexpr std::size_t page = 65536;  // a multiple of the page of every machine

  std::size_t size_, usable_;
  std::uint8_t* base_;
};

// `size` bytes at an address that is `offset` past a 32-byte boundary, filled with `fill`, which also stands on both
// sides of them: a handle's memory, or an output line.
class fenced_block {
 public:
  explicit fenced_block(std::size_t size, std::size_t offset = 0, std::uint8_t fill = 0xA5)
      : size_(size), fill_(fill), bytes_(size + 2 * fence + 64, fill) {
    const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(bytes_.data()) + fence;
    start_ = fence + (32 - first % 32) % 32 + offset;
  }

  std::uint8_t* data() { return bytes_.data() + start_; }
  std::span<const std::uint8_t> contents() const { return {bytes_.data() + start_, size_}; }
  // A copy of the contents. Only here may the gaps of a handle be read, which the address sanitizer watches.
  __attribute__((no_sanitize_address)) std::vector<std::uint8_t> bytes() const {
    std::vector<std::uint8_t> copy(size_);
    const volatile std::uint8_t* from = bytes_.data() + start_;
    for (std::size_t i = 0; i < size_; ++i) copy[i] = from[i];
    return copy;
  }
  bool fences_intact() const { return filled(0, start_) && filled(start_ + size_, bytes_.size()); }
  bool untouched() const { return filled(0, bytes_.size()); }

 private:
  static constexpr std::size_t fence = 64;

  bool filled(std::size_t from, std::size_t to) const {
    return std::all_of(bytes_.begin() + std::ptrdiff_t(from), bytes_.begin() + std::ptrdiff_t(to),
                       [this](std::uint8_t b) { return b == fill_; });
  }

  std::size_t size_;
  std::uint8_t fill_;
  std::vector<std::uint8_t> bytes_;
  std::size_t start_;
};

}  // namespace vrk::test
