// The one way to take memory from a handle, and to find a handle's record again.
#pragma once

#include <algorithm>
#include <cstring>
#include <new>
#include <span>

#include "base/address_as.h"
#include "base/integers.h"

#if defined(__SANITIZE_ADDRESS__)
#define VRK_WATCHED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VRK_WATCHED 1
#endif
#endif
#ifdef VRK_WATCHED
#include <sanitizer/asan_interface.h>
#endif

namespace vrk {

// Builds with the address sanitizer watch what was not handed out of a handle: the gaps between its pieces and the rest
// behind the last one. An access there ends the program.
#ifdef VRK_WATCHED
inline void watch_memory(void* at, u64 bytes) { ASAN_POISON_MEMORY_REGION(at, std::size_t(bytes)); }
inline void unwatch_memory(void* at, u64 bytes) { ASAN_UNPOISON_MEMORY_REGION(at, std::size_t(bytes)); }
#else
inline void watch_memory(void*, u64) {}
inline void unwatch_memory(void*, u64) {}
#endif

constexpr u32 section_alignment = 32;  // tables begin on 32-byte boundaries of the address itself
constexpr u32 section_slack = 31;      // what one such boundary can cost

// A size in bytes for the caller: 0, the result that means failure, where 32 bits cannot tell it.
constexpr u32 size_or_0(u64 bytes) { return bytes <= 0xFFFFFFFFu ? u32(bytes) : 0; }

// Bytes from an address up to the next multiple of `alignment`.
inline std::size_t gap_to(const void* at, std::size_t alignment) {
  return std::size_t(0 - reinterpret_cast<std::uintptr_t>(at)) % alignment;
}

// Memory for a handle may lie at any address: its record stands at the first aligned one.
constexpr u32 record_slack = 3;

// The record of a handle, which is what callers know their memory by.
template <class T>
const T& record_of(const void* handle) {
  static_assert(alignof(T) <= record_slack + 1);
  return *address_as<const T>(static_cast<const u8*>(handle) + gap_to(handle, alignof(T)));
}
template <class T>
T& record_of(void* handle) {
  return const_cast<T&>(record_of<T>(static_cast<const void*>(handle)));
}

// Hands out typed pieces of the caller's block from its start upward and counts what was used. A piece that does not
// fit comes back empty and marks the carver; nothing outside the block is ever handed out. The block is cleared first,
// gaps included, so that the same tables give the same bytes whatever the memory held before.
class carver {
 public:
  carver(void* mem, u64 size) : base_(static_cast<u8*>(mem)), size_(size) {
    unwatch_memory(mem, size);
    std::memset(mem, 0, std::size_t(size));
    watch_memory(mem, size);
  }

  // The handle record, where record_of finds it: constructed (all fields as their initialisers say).
  // counted_bytes: what the size rule counts for it and its alignment; the next piece follows behind them.
  template <class T>
  T* record(u64 counted_bytes = sizeof(T)) {
    const u64 gap = gap_to(base_, alignof(T));
    u8* const at = reserve(std::max(counted_bytes, gap + sizeof(T)), 1);
    if (at == nullptr) return nullptr;
    unwatch_memory(at + gap, sizeof(T));
    return new (at + gap) T{};
  }

  // `count` entries at the next address that T needs.
  template <class T>
  std::span<T> take(u64 count, std::size_t alignment = alignof(T)) {
    u8* const at = reserve(count * sizeof(T), alignment);
    if (at == nullptr) return {};
    unwatch_memory(at, count * sizeof(T));
    return {address_as<T>(at), std::size_t(count)};
  }

  // `count` entries at the next 32-byte boundary.
  template <class T>
  std::span<T> section(u64 count) {
    return take<T>(count, section_alignment);
  }

  // Kernels may read as many bytes behind the last piece, gap or not.
  void read_behind(u64 bytes) { unwatch_memory(base_ + used_, std::min(bytes, size_ - used_)); }

  u64 used() const { return used_; }
  bool ok() const { return ok_; }

 private:
  u8* reserve(u64 bytes, std::size_t alignment) {
    const u64 gap = gap_to(base_ + used_, alignment);
    if (!ok_ || gap > size_ - used_ || bytes > size_ - used_ - gap) {
      ok_ = false;
      return nullptr;
    }
    u8* const at = base_ + used_ + gap;
    used_ += gap + bytes;
    return at;
  }

  u8* base_;
  u64 size_;
  u64 used_ = 0;
  bool ok_ = true;
};

}  // namespace vrk
