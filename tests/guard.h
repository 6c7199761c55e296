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
#include <span>
#include <stdexcept>
#include <vector>

namespace vrk::test {

// Whole pages of memory, the last of which nobody may touch.
class guarded_pages {
 public:
  explicit guarded_pages(std::size_t usable) {
    usable_ = (usable + page - 1) / page * page;
#ifdef _WIN32
    DWORD before;
    base_ = VirtualAlloc(nullptr, usable_ + page, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    if (base_ == nullptr) throw std::runtime_error("VirtualAlloc failed");
    VirtualProtect(guard(), page, PAGE_NOACCESS, &before);
#else
    base_ = mmap(nullptr, usable_ + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (base_ == MAP_FAILED) throw std::runtime_error("mmap failed");
    mprotect(guard(), page, PROT_NONE);
#endif
  }
  ~guarded_pages() {
#ifdef _WIN32
    VirtualFree(base_, 0, MEM_RELEASE);
#else
    munmap(base_, usable_ + page);
#endif
  }
  guarded_pages(const guarded_pages&) = delete;
  guarded_pages& operator=(const guarded_pages&) = delete;

  std::uint8_t* guard() const { return static_cast<std::uint8_t*>(base_) + usable_; }

 private:
  static constexpr std::size_t page = 65536;  // a multiple of the page of every machine

  std::size_t usable_;
  void* base_;
};

// A copy of some bytes whose end is the start of a page that nobody may touch: one byte read too far ends the program.
// `end()` is a pointer that may not be followed at all.
class guarded_copy {
 public:
  explicit guarded_copy(std::span<const std::uint8_t> bytes)
      : size_(bytes.size()), pages_(size_), data_(pages_.guard() - size_) {
    if (size_ != 0) std::memcpy(data_, bytes.data(), size_);
  }

  std::uint8_t* data() { return data_; }
  std::uint8_t* end() { return data_ + size_; }
  std::uint32_t size() const { return std::uint32_t(size_); }

 private:
  std::size_t size_;
  guarded_pages pages_;
  std::uint8_t* data_;
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
  const std::uint8_t* data() const { return bytes_.data() + start_; }
  std::span<const std::uint8_t> contents() const { return {data(), size_}; }
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
