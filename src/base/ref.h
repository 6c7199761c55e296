// A 32-bit reference inside a handle, so that records have the same size on every build.
#pragma once

#include "base/integers.h"

namespace vrk {

// Holds the distance in bytes from itself to its target, which lies behind it in the same block; 0 stands for none.
// Self-relative: it cannot be copied out of its record. Const reaches through it: whoever has a const handle can read
// what the handle refers to, and nothing else.
template <class T>
class ref {
 public:
  ref() = default;
  ref(const ref&) = delete;
  ref& operator=(const ref&) = delete;

  ref& operator=(T* target) {
    distance_ = target == nullptr ? 0 : u32(reinterpret_cast<std::uintptr_t>(target) - self());
    return *this;
  }

  T* get() { return distance_ == 0 ? nullptr : target<T>(); }
  const T* get() const { return distance_ == 0 ? nullptr : target<const T>(); }
  T& operator[](std::size_t i) { return target<T>()[i]; }
  const T& operator[](std::size_t i) const { return target<const T>()[i]; }
  explicit operator bool() const { return distance_ != 0; }

 private:
  template <class Target>
  Target* target() const {
    return reinterpret_cast<Target*>(self() + distance_);
  }
  std::uintptr_t self() const { return reinterpret_cast<std::uintptr_t>(this); }

  u32 distance_ = 0;
};

}  // namespace vrk
