// Memory that ends where it says: one byte further ends the program.
#pragma once

#include <cstring>

#include "fuzz/input.h"
#include "tests/guard.h"

#if defined(__SANITIZE_ADDRESS__)
#define VRK_FUZZ_HEAP_IS_WATCHED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VRK_FUZZ_HEAP_IS_WATCHED 1
#endif
#endif

namespace vrk::fuzz {

// `size` bytes of 0xA5, `offset` (0 ... 255) past an address that the heap gives. Before them nothing may be written.
// Behind them begins what the address sanitizer watches, or a page that nobody may touch; there the page decides
// where they lie.
class exact_memory {
 public:
  explicit exact_memory(std::size_t size, std::size_t offset = 0)
      : size_(size), offset_(offset + (offset + size == 0)), block_(offset_ + size) {
    std::memset(block_.data(), 0xA5, offset_ + size);
  }
  exact_memory(byte_span contents, std::size_t offset) : exact_memory(contents.size(), offset) {
    if (size_ != 0) std::memcpy(data(), contents.data(), size_);
  }
  exact_memory(const exact_memory&) = delete;
  exact_memory& operator=(const exact_memory&) = delete;
  ~exact_memory() {
    for (std::size_t i = 0; i < offset_; ++i) require(block_.data()[i] == 0xA5, "nothing is written before a buffer");
  }

  std::uint8_t* data() const { return block_.data() + offset_; }
  std::size_t size() const { return size_; }
  byte_span contents() const { return {data(), size_}; }

 private:
#ifdef VRK_FUZZ_HEAP_IS_WATCHED
  struct block {
    explicit block(std::size_t size) : at(static_cast<std::uint8_t*>(std::malloc(size))) {}
    block(const block&) = delete;
    block& operator=(const block&) = delete;
    ~block() { std::free(at); }
    std::uint8_t* data() const { return at; }
    std::uint8_t* at;
  };
#else
  struct block {
    explicit block(std::size_t size) : page(std::vector<std::uint8_t>(size)) {}
    std::uint8_t* data() const { return page.data(); }
    mutable test::guarded_copy page;
  };
#endif

  std::size_t size_, offset_;
  block block_;
};

}  // namespace vrk::fuzz
