// A handle as a caller gets it, and what every create function promises.
#pragma once

#include <optional>

#include "fuzz/memory.h"
#include "vrk.h"

namespace vrk::fuzz {

// Larger handles are only asked for their size: clearing them takes longer than a thousand small ones.
inline constexpr std::uint32_t most_handle_bytes = 150000;

// Of a handle, gaps included, which only this may look at.
__attribute__((no_sanitize("address"))) inline std::uint64_t digest_of(const std::uint8_t* at, std::size_t size) {
  std::uint64_t digest = size;
  for (; size >= 8; at += 8, size -= 8) {
    std::uint64_t word;
    __builtin_memcpy(&word, at, 8);
    digest = (digest ^ word) * 0x9E3779B97F4A7C15u;
    digest ^= digest >> 29;
  }
  for (; size != 0; --size) digest = (digest ^ *at++) * 0x100000001B3u;
  return digest;
}

// Whether the build call examines headers, too. Those of the pre-processors rely on the size call.
enum class headers { by_both_calls, by_size_call };

class handle {
 public:
  // create(mem): a create function with all its arguments but the memory.
  template <class Create>
  handle(Create create, std::size_t offset, headers examined = headers::by_both_calls) {
    const std::uint32_t size = create(nullptr);
    if (size == 0 && examined == headers::by_size_call) return;
    if (size == 0) {
      const exact_memory nothing(0);
      require(create(nothing.data()) == 0, "what the size call refuses the build call refuses, and writes nothing");
      return;
    }
    if (size > most_handle_bytes) return;
    memory_.emplace(size, offset);
    used_ = create(memory_->data());
    require(used_ <= size, "no more is used than was asked for");
    require(create(nullptr) == size, "the size is the same after the build call");
  }

  explicit operator bool() const { return used_ != 0; }
  void* get() const { return memory_->data(); }
  std::uint32_t used() const { return used_; }
  std::uint64_t digest() const { return digest_of(memory_->data(), used_); }

  // The same build call 32 bytes further on, or wherever the address counts for as much: the same bytes.
  template <class Create>
  void expect_same_bytes(Create create) const {
    const exact_memory other(memory_->size() + 32);
    const std::uintptr_t apart = std::uintptr_t(memory_->data()) - std::uintptr_t(other.data());
    std::uint8_t* const at = other.data() + apart % 32;
    require(create(at) == used_, "the same build call uses as many bytes");
    require(digest_of(at, used_) == digest(), "the same build call gives the same bytes");
  }

 private:
  std::optional<exact_memory> memory_;
  std::uint32_t used_ = 0;
};

}  // namespace vrk::fuzz
