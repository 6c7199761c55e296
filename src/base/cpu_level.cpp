#include "base/cpu_level.h"

#include "base/level_code.h"
#ifdef VRK_HAS_LEVELS
#include <cpuid.h>
#endif

namespace vrk {

#ifdef VRK_HAS_LEVELS

namespace {

// Whether the operating system keeps the upper halves of the vector registers when it changes threads.
bool system_keeps_ymm() {
  u32 low, high;
  asm("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return (low & 6) == 6;
}

}  // namespace

cpu_level level_of_processor() {
  u32 a, b, c, d;
  if (__get_cpuid(1, &a, &b, &c, &d) == 0) return cpu_level::base;
  if ((c & bit_SSSE3) == 0 || (c & bit_SSE4_1) == 0) return cpu_level::base;
  const bool has_ymm = (c & bit_OSXSAVE) != 0 && (c & bit_AVX) != 0 && system_keeps_ymm();
  if (!has_ymm || __get_cpuid_count(7, 0, &a, &b, &c, &d) == 0 || (b & bit_AVX2) == 0) return cpu_level::sse41;
  return cpu_level::avx2;
}

#else

cpu_level level_of_processor() { return cpu_level::base; }

#endif

}  // namespace vrk
