// What all benchmarks share: the pixels that go through a stage, the pixel rate, and the comparison with other
// libraries.
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
  std::vector<std::uint16_t> rgb16;  // the same with low bits that a scan would have

  unsigned pixels() const { return width * height; }
};

const picture& photographic();    // smooth areas, texture and grain
const picture& uniform_random();  // every pixel elsewhere in the colour cube

// Reports `pixels` for every iteration as Mpixel/s.
inline void count_pixels(benchmark::State& state, double pixels) {
  state.counters["Mpixel/s"] = benchmark::Counter(pixels * 1e-6, benchmark::Counter::kIsIterationInvariantRate);
}

// Asks for a line in the table at the end of the run: the rate of benchmark `ours` over that of `theirs`, and the
// ratio that it shall reach. Either may be missing from the run.
void compare(std::string ours, std::string theirs, double bar);

}  // namespace vrk::bench
