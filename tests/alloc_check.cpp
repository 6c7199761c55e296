// A program of its own, because it replaces the allocator: no export may allocate, on the thread that loaded the
// library or on one that started later.
#include <cstdio>
#include <thread>

#include "tests/every_export.h"

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* at, std::size_t size);
}

namespace {

thread_local unsigned long allocations = 0;

int exports_that_allocate() {
  int found = 0;
  const int failed = vrk::test::call_every_export([&found](const char* name, auto* function, auto... arguments) {
    struct watch {
      const char* name;
      int* found;
      unsigned long before = allocations;
      ~watch() {
        if (allocations == before) return;
        ++*found;
        std::fprintf(stderr, "%s allocated\n", name);
      }
    } const watched{name, &found};
    return function(arguments...);
  });
  if (failed != 0) std::fprintf(stderr, "%d calls failed\n", failed);
  return found + failed;
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) {
  ++allocations;
  return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
  ++allocations;
  return __libc_calloc(count, size);
}

void* realloc(void* at, std::size_t size) {
  ++allocations;
  return __libc_realloc(at, size);
}

}  // extern "C"

int main() {
  const unsigned long before = allocations;
  delete new int;
  if (allocations == before) {
    std::fprintf(stderr, "allocations are not counted\n");
    return 1;
  }
  int found = exports_that_allocate();
  std::thread([&found] { found += exports_that_allocate(); }).join();
  return found == 0 ? 0 : 1;
}
