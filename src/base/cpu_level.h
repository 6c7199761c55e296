// What a processor can do beyond the least that the build asks of it. Creation asks once and keeps the answer in the
// handle; kernels that need more than the least are chosen by it.
#pragma once

#include <array>

#include "base/integers.h"

namespace vrk {

// Each includes the ones before it. base: SSE2 on x86, no vectors elsewhere.
enum class cpu_level : u8 { base, sse41, avx2 };
constexpr std::array<cpu_level, 3> cpu_levels{cpu_level::base, cpu_level::sse41, cpu_level::avx2};

// Of the processor and operating system that this runs on. Takes microseconds in a virtual machine: for creation only.
cpu_level level_of_processor();

// One entry for each level. A level that is not named has the entry of the one below.
template <class T>
struct by_level {
  T base{}, sse41{}, avx2{};

  constexpr by_level() = default;
  constexpr by_level(T of_all) : by_level(of_all, of_all) {}
  constexpr by_level(T of_base, T above) : by_level(of_base, above, above) {}
  constexpr by_level(T of_base, T of_sse41, T of_avx2) : base(of_base), sse41(of_sse41), avx2(of_avx2) {}

  constexpr T operator[](cpu_level level) const {
    return level == cpu_level::avx2 ? avx2 : level == cpu_level::sse41 ? sse41 : base;
  }
};

}  // namespace vrk
