// A program of its own, compiled with the thread sanitizer together with the library. One handle of a transforming
// stage serves many threads at once, and every thread gets the same; so does each of as many threads with handles of
// its own.
#include <atomic>
#include <cstdio>
#include <thread>
#include <tuple>
#include <type_traits>

#include "tests/every_export.h"

namespace {

constexpr std::size_t thread_count = 64;

template <class Work>
void in_threads(Work work) {
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < thread_count; ++i) threads.emplace_back(work, i);
  for (std::thread& thread : threads) thread.join();
}

// Of every export that the last argument of which is where it writes: a transform.
int shared_handles() {
  int different = 0;
  const int failed = vrk::test::call_every_export([&](const char* name, auto* function, auto... arguments) {
    if constexpr (sizeof...(arguments) >= 4) {
      constexpr std::size_t last = sizeof...(arguments) - 1;
      using all = std::tuple<decltype(arguments)...>;
      if constexpr (std::is_same_v<std::tuple_element_t<last, all>, std::uint8_t*>) {
        std::vector<std::vector<std::uint8_t>> lines(thread_count, std::vector<std::uint8_t>(1024));
        in_threads([&](std::size_t i) {
          auto own = all(arguments...);
          std::get<last>(own) = lines[i].data();
          std::apply(function, own);
        });
        if (lines == std::vector(thread_count, lines[0])) return function(arguments...);
        std::fprintf(stderr, "%s: threads differ\n", name);
        ++different;
      }
    }
    return function(arguments...);
  });
  return failed + different;
}

// All stages with all calls, halftoning included, which remembers the line above.
int own_handles() {
  std::atomic<int> failed = 0;
  in_threads([&](std::size_t) {
    failed +=
        vrk::test::call_every_export([](auto*, auto* function, auto... arguments) { return function(arguments...); });
  });
  return failed;
}

}  // namespace

int main() { return shared_handles() + own_handles() == 0 ? 0 : 1; }
