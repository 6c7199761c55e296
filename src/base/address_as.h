// The same address as one of another type. Where that type needs more than a byte of alignment, whoever calls knows
// that the address has it, as pieces of a handle have it from their carver; or it is a vector's that is loaded from and
// stored to any address. It stands for the casts that a compiler warns of (-Wcast-align), so that each of them is one
// of these.
#pragma once

#include <type_traits>

namespace vrk {

template <class T>
T* address_as(void* at) {
  return static_cast<T*>(at);
}
template <class T>
T* address_as(const void* at) {
  static_assert(std::is_const_v<T>);
  return static_cast<T*>(at);
}

}  // namespace vrk
