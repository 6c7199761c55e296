#include "tools/print/print_lines.h"

#include <tbb/global_control.h>
#include <tbb/parallel_pipeline.h>
#include <tbb/task_arena.h>

#include <algorithm>
#include <cstring>

#include "tools/command_line/progress.h"
#include "tools/print/in_order.h"

namespace vrk::tool {
namespace {

// Lines that one thread hands to the next together.
struct band {
  band(const pipeline& stages, std::size_t capacity)
      : source(capacity * stages.source_bytes()),
        inks(capacity * stages.ink_bytes()),
        packed(capacity * stages.packed_bytes()),
        space(stages) {}

  unsigned lines = 0;
  std::vector<std::uint8_t> source, inks, packed;  // as read, as converted, as halftoned
  pipeline::workspace space;
};

// More would only wait for the halftone, which takes one after the other.
std::size_t number_of_bands(unsigned threads) { return threads == 1 ? 1 : std::min(2 * threads, 32U); }

// Many enough to be worth a hand-over between threads, few enough to need about this much memory, however many threads
// there are.
std::size_t lines_of_a_band(const pipeline& stages, std::size_t bands) {
  constexpr std::size_t most_bytes = 1 << 20, most_bytes_of_all = 16 << 20;
  const std::size_t band_bytes = std::min(most_bytes, most_bytes_of_all / bands);
  const std::size_t line_bytes = stages.source_bytes() + stages.ink_bytes() + stages.packed_bytes();
  return std::clamp<std::size_t>(band_bytes / line_bytes, 1, 64);
}

}  // namespace

// Reading, halftoning and writing each take one band after the other, each on a thread of its own if there are enough.
// Several bands are converted at once.
double print_lines(image_reader& source, pipeline& stages, page_files& files, unsigned threads, bool silent) {
  const std::size_t capacity = lines_of_a_band(stages, number_of_bands(threads));
  std::vector<band> bands(number_of_bands(threads), band(stages, capacity));
  std::size_t next = 0;
  unsigned lines_left = source.height();
  stopwatch reading;
  progress bar(source.height(), silent);

  const auto read = [&](tbb::flow_control& flow) -> band* {
    const in_order one_read(&reading);
    if (lines_left == 0) {
      flow.stop();
      return nullptr;
    }
    band& to = bands[next++ % bands.size()];  // free again: at most bands.size() are in use, and they end in order
    const in_order after_writing(&to);
    to.lines = unsigned(std::min<std::size_t>(lines_left, capacity));
    lines_left -= to.lines;
    reading.time([&] {
      for (unsigned y = 0; y < to.lines; ++y) source.read_line(&to.source[y * stages.source_bytes()]);
    });
    return &to;
  };
  const auto convert = [&](band* b) {
    const in_order after_reading(b);
    for (unsigned y = 0; y < b->lines; ++y) {
      const std::uint8_t* const line = &b->source[y * stages.source_bytes()];
      std::uint8_t* const inks = &b->inks[y * stages.ink_bytes()];
      if (y != 0 && std::memcmp(line, line - stages.source_bytes(), stages.source_bytes()) == 0) {
        std::memcpy(inks, inks - stages.ink_bytes(), stages.ink_bytes());  // margins, and enlarged pixels
      } else {
        stages.convert(line, inks, b->space);
      }
    }
    return b;
  };
  const auto halftone = [&](band* b) {
    const in_order after_converting(b), one_halftone(&stages);
    for (unsigned y = 0; y < b->lines; ++y) {
      stages.halftone_line(&b->inks[y * stages.ink_bytes()], &b->packed[y * stages.packed_bytes()]);
    }
    return b;
  };
  const auto write = [&](band* b) {
    const in_order after_halftoning(b), one_write(&files);
    for (unsigned y = 0; y < b->lines; ++y, bar.step()) files.add_line(&b->packed[y * stages.packed_bytes()]);
  };
  using mode = tbb::filter_mode;
  handed_over(&reading);
  const tbb::global_control most(tbb::global_control::max_allowed_parallelism, threads);
  tbb::task_arena(int(threads)).execute([&] {
    tbb::parallel_pipeline(bands.size(), tbb::make_filter<void, band*>(mode::serial_in_order, read) &
                                             tbb::make_filter<band*, band*>(mode::parallel, convert) &
                                             tbb::make_filter<band*, band*>(mode::serial_in_order, halftone) &
                                             tbb::make_filter<band*, void>(mode::serial_in_order, write));
  });
  taken_over(&reading);
  taken_over(&files);
  for (const band& b : bands) stages.collect(b.space);
  return reading.seconds();
}

}  // namespace vrk::tool
