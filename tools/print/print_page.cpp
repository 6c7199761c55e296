#include "tools/print/print_page.h"

#include <tbb/global_control.h>
#include <tbb/info.h>
#include <tbb/parallel_pipeline.h>
#include <tbb/task_arena.h>

#include <algorithm>

#include "tools/image/output_file.h"
#include "tools/print/page_files.h"
#include "tools/print/progress.h"

namespace vrk::tool {
namespace {

// Lines that travel together.
struct band {
  band(const pipeline& road, std::size_t capacity)
      : source(capacity * road.source_bytes()),
        inks(capacity * road.ink_bytes()),
        packed(capacity * road.packed_bytes()),
        space(road) {}

  unsigned lines = 0;
  std::vector<std::uint8_t> source, inks, packed;  // as read, as converted, as halftoned
  pipeline::workspace space;
};

// Enough lines to be worth handing over to another thread, in about so much memory.
std::size_t lines_of_a_band(const pipeline& road) {
  constexpr std::size_t band_bytes = 1 << 20;
  const std::size_t line_bytes = road.source_bytes() + road.ink_bytes() + road.packed_bytes();
  return std::clamp<std::size_t>(band_bytes / line_bytes, 1, 64);
}

// All lines of the picture, in order, into the files. Reading, halftoning and writing each take one band after the
// other, each in a thread of its own if there are enough; bands are converted side by side.
void print_lines(image_reader& source, pipeline& road, page_files& files, unsigned threads, stopwatch& reading) {
  const std::size_t capacity = lines_of_a_band(road);
  std::vector<band> bands(threads == 1 ? 1 : 2 * threads, band(road, capacity));
  std::size_t next = 0;
  unsigned lines_left = source.height();
  progress bar(source.height());

  const auto read = [&](tbb::flow_control& flow) -> band* {
    if (lines_left == 0) {
      flow.stop();
      return nullptr;
    }
    band& to = bands[next++ % bands.size()];  // done with: no more than all are under way, and they end in order
    to.lines = unsigned(std::min<std::size_t>(lines_left, capacity));
    lines_left -= to.lines;
    reading.time([&] {
      for (unsigned y = 0; y < to.lines; ++y) source.read_line(&to.source[y * road.source_bytes()]);
    });
    return &to;
  };
  const auto convert = [&](band* b) {
    for (unsigned y = 0; y < b->lines; ++y) {
      road.convert(&b->source[y * road.source_bytes()], &b->inks[y * road.ink_bytes()], b->space);
    }
    return b;
  };
  const auto halftone = [&](band* b) {
    for (unsigned y = 0; y < b->lines; ++y) {
      road.halftone_line(&b->inks[y * road.ink_bytes()], &b->packed[y * road.packed_bytes()]);
    }
    return b;
  };
  const auto write = [&](band* b) {
    for (unsigned y = 0; y < b->lines; ++y, bar.step()) files.add_line(&b->packed[y * road.packed_bytes()]);
  };
  using mode = tbb::filter_mode;
  const tbb::global_control most(tbb::global_control::max_allowed_parallelism, threads);
  tbb::task_arena(int(threads)).execute([&] {
    tbb::parallel_pipeline(bands.size(), tbb::make_filter<void, band*>(mode::serial_in_order, read) &
                                             tbb::make_filter<band*, band*>(mode::parallel, convert) &
                                             tbb::make_filter<band*, band*>(mode::serial_in_order, halftone) &
                                             tbb::make_filter<band*, void>(mode::serial_in_order, write));
  });
  for (const band& b : bands) road.collect(b.space);
}

}  // namespace

print_report print_page(image_reader& source, const print_options& options, const std::filesystem::path& directory,
                        std::optional<detail::place> detail_centre) {
  const unsigned width = source.width(), height = source.height();
  const unsigned threads = options.threads != 0 ? options.threads : unsigned(tbb::info::default_concurrency());
  const line_format format{source.channels(), source.bits()};
  pipeline road = make_pipeline(options, choose_tables(options, format), width, format);

  make_directory(directory);
  page_files files(directory, road.planes(), width, height,
                   detail_centre.value_or(detail::place{width / 2, height / 2}));

  stopwatch reading, all;
  all.time([&] { print_lines(source, road, files, threads, reading); });

  print_report report{source.name(), width, height, source.channels(), source.bits(), threads, {}, {}, all.seconds()};
  for (std::size_t p = 0; p < files.planes(); ++p) report.planes.push_back({files.name(p), files.coverage(p)});
  report.times.push_back({"read", {}, reading.seconds()});
  for (stage_time& t : road.times()) report.times.push_back(std::move(t));
  report.times.push_back({"draw pictures", {}, files.seconds_drawing()});
  report.times.push_back({"write planes", {}, files.seconds_writing()});
  files.keep();
  return report;
}

}  // namespace vrk::tool
