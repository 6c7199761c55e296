// Shared by the benchmarks beside other libraries: the pixel rate, and the comparison.
#pragma once

#include <benchmark/benchmark.h>

#include <string>

#include "bench/pictures.h"

namespace vrk::bench {

// Reports `pixels` for every iteration as Mpixel/s.
inline void count_pixels(benchmark::State& state, double pixels) {
  state.counters["Mpixel/s"] = benchmark::Counter(pixels * 1e-6, benchmark::Counter::kIsIterationInvariantRate);
}

// Adds a line to the table at the end of the run: the rate of benchmark `ours` over that of `theirs`, and the ratio to
// reach. The line is left out when one of them did not run.
void compare(std::string ours, std::string theirs, double bar);

}  // namespace vrk::bench
