// The one way to take memory from a handle.
#pragma once

#include <cstring>
#include <new>
#include <span>

#include "frame/types.h"

namespace vrk {

constexpr u32 section_alignment = 32;     // tables begin on 32-byte boundaries of the address itself
constexpr u32 section_slack = 31;         // what one such boundary can cost
constexpr std::size_t mem_alignment = 4;  // what every allocator gives, and what a record needs

inline bool is_aligned(const void* mem) { return reinterpret_cast<std::uintptr_t>(mem) % mem_alignment == 0; }

// Hands out typed pieces of the caller's block from its start upward and counts what was used. A piece that does not
// fit comes back empty and marks the carver; nothing outside the block is ever handed out. The block is cleared first,
// gaps included, so that the same tables give the same bytes whatever the memory held before.
class carver {
 public:
  carver(void* mem, u64 size) : base_(static_cast<u8*>(mem)), size_(size) { std::memset(mem, 0, std::size_t(size)); }

  // The handle record: constructed (all fields as their initialisers say) at the start of the block.
  // counted_bytes: what the size rule counts for it, which the next piece follows; never less than the record itself.
  template <class T>
  T* record(u64 counted_bytes = sizeof(T)) {
    u8* const at = reserve(counted_bytes, alignof(T));
    return at == nullptr ? nullptr : new (at) T{};
  }

  // `count` entries at the next address that T needs.
  template <class T>
  std::span<T> take(u64 count, std::size_t alignment = alignof(T)) {
    u8* const at = reserve(count * sizeof(T), alignment);
    return at == nullptr ? std::span<T>{} : std::span<T>(reinterpret_cast<T*>(at), std::size_t(count));
  }

  // `count` entries at the next 32-byte boundary.
  template <class T>
  std::span<T> section(u64 count) {
    return take<T>(count, section_alignment);
  }

  u64 used() const { return used_; }
  bool ok() const { return ok_; }

 private:
  u8* reserve(u64 bytes, std::size_t alignment) {
    const std::uintptr_t end = reinterpret_cast<std::uintptr_t>(base_) + std::uintptr_t(used_);
    const u64 gap = (alignment - end % alignment) % alignment;
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
