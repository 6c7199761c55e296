// Shared by all benchmarks: the input pictures, the pixel rate, and the comparison with other libraries.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

namespace vrk::bench {

// An RGB picture in both sample widths; stages are called line by line, as a driver does.
struct picture {
  const char* name;
  unsigned width, height;
  std::vector<std::uint8_t> rgb8;
  std::vector<std::uint16_t> rgb16;  // the same, with random low bits

  unsigned pixels() const { return width * height; }
};

const picture& photographic();    // smooth areas, texture and grain
const picture& uniform_random();  // pixels anywhere in the colour cube

// Reports `pixels` for every iteration as Mpixel/s.
inline void count_pixels(benchmark::State& state, double pixels) {
  state.counters["Mpixel/s"] = benchmark::Counter(pixels * 1e-6, benchmark::Counter::kIsIterationInvariantRate);
}

// Adds a line to the table at the end of the run: the rate of benchmark `ours` over that of `theirs`, and the ratio to
// reach. The line is left out when one of them did not run.
void compare(std::string ours, std::string theirs, double bar);

}  // namespace vrk::bench
