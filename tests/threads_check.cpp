// A program of its own, compiled with the thread sanitizer together with the library: one handle of a transforming
// stage serves several threads at once, and every thread gets the same.
#include <cstdio>
#include <thread>
#include <tuple>
#include <type_traits>

#include "tests/every_export.h"

int main() {
  int different = 0;
  const int failed = vrk::test::call_every_export([&](const char* name, auto* function, auto... arguments) {
    if constexpr (sizeof...(arguments) >= 4) {
      constexpr std::size_t last = sizeof...(arguments) - 1;
      using all = std::tuple<decltype(arguments)...>;
      if constexpr (std::is_same_v<std::tuple_element_t<last, all>,
                                   std::uint8_t*>) {  // a transform, which writes there
        std::vector<std::vector<std::uint8_t>> lines(4, std::vector<std::uint8_t>(1024));
        std::vector<std::thread> threads;
        for (auto& line : lines) {
          threads.emplace_back([&, own = all(arguments...)]() mutable {
            std::get<last>(own) = line.data();
            std::apply(function, own);
          });
        }
        for (std::thread& thread : threads) thread.join();
        if (lines == std::vector(4, lines[0])) return function(arguments...);
        std::fprintf(stderr, "%s: threads differ\n", name);
        ++different;
      }
    }
    return function(arguments...);
  });
  return failed + different == 0 ? 0 : 1;
}
