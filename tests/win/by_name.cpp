#include "tests/win/by_name.h"

#include <cstdio>
#include <cstdlib>

namespace {

// Before main, and under the floating-point control word that Windows gives its threads: doubles of 53 bits.
[[gnu::constructor]] void load() {
  const std::uint16_t control_word = 0x27F;
  asm volatile("fldcw %0" : : "m"(control_word));
  const HMODULE dll = LoadLibraryA("vrk.dll");
  for (by_name_export& e : by_name_exports) {
    e.address = dll == nullptr ? nullptr : GetProcAddress(dll, e.name);
    if (e.address == nullptr) {
      std::fprintf(stderr, "vrk.dll does not load, or has no %s\n", e.name);
      std::exit(1);
    }
  }
}

}  // namespace

extern "C" [[noreturn]] void by_name_broken_call(const by_name_export& e, std::int32_t excess) {
  std::fprintf(stderr, "%s with %u arguments: stack pointer off by %d bytes, or a register that it must keep is lost\n",
               e.name, e.arguments, excess);
  std::abort();
}
