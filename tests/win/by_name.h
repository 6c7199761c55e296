// The exports of vrk.dll, loaded by name; see by_name.S.
#pragma once

#include <windows.h>

#include <cstdint>

extern "C" {

struct by_name_export {
  const char* name;
  std::uint32_t arguments;
  FARPROC address;
  std::uint32_t calls;  // so far
};

extern by_name_export by_name_exports[53];
extern std::uint32_t by_name_skew;  // the stack pointer modulo 16 at every call: 4, unless a test sets 0, 8 or 12
}
