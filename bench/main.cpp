// Runs the benchmarks, then prints how the stages compare with other libraries in the same run.
#include <algorithm>
#include <cstdio>
#include <map>
#include <random>

#include "bench/common.h"
#include "pictures/photograph.h"

namespace vrk::bench {
namespace {

constexpr unsigned line_width = 2400, line_count = 160;

void widen(picture& p) {
  std::minstd_rand noise(2);
  for (const unsigned v : p.rgb8) p.rgb16.push_back(std::uint16_t(v << 8 | (noise() >> 8 & 0xFF)));
}

struct comparison {
  std::string ours, theirs;
  double bar;
};

std::vector<comparison>& comparisons() {
  static std::vector<comparison> list;
  return list;
}

// Prints the usual report and keeps the rates by name for the comparison: the median of repeated runs.
class rate_reporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      const auto rate = run.counters.find("Mpixel/s");
      if (run.run_type == Run::RT_Iteration && rate != run.counters.end()) {
        rates_[run.run_name.function_name].push_back(rate->second.value);
      }
    }
  }

  double rate(const std::string& name) {
    std::vector<double>& all = rates_[name];
    if (all.empty()) return 0;
    std::sort(all.begin(), all.end());
    return all[all.size() / 2];
  }

 private:
  std::map<std::string, std::vector<double>> rates_;
};

void print_comparisons(rate_reporter& reporter) {
  std::printf("\n%-44s %9s  %-24s %9s %6s %5s\n", "Mpixel/s", "", "beside", "", "ratio", "bar");
  for (const comparison& c : comparisons()) {
    const double ours = reporter.rate(c.ours), theirs = reporter.rate(c.theirs);
    if (ours == 0 || theirs == 0) continue;
    std::printf("%-44s %9.1f  %-24s %9.1f %6.2f %5.1f%s\n", c.ours.c_str(), ours, c.theirs.c_str(), theirs,
                ours / theirs, c.bar, ours / theirs < c.bar ? "  below" : "");
  }
}

}  // namespace

const picture& photographic() {
  static const picture p = [] {
    picture made{"photo", line_width, line_count, {}, {}};
    // Every tenth line of a page of such lines, so that all regions of the picture are in it.
    const kit::bytes page = pictures::photograph(line_width, line_count * 10);
    for (unsigned y = 0; y < line_count; ++y) {
      const auto line = page.begin() + std::ptrdiff_t(y) * 10 * 3 * line_width;
      made.rgb8.insert(made.rgb8.end(), line, line + 3 * line_width);
    }
    widen(made);
    return made;
  }();
  return p;
}

const picture& uniform_random() {
  static const picture p = [] {
    picture made{"random", line_width, line_count, {}, {}};
    std::minstd_rand generator(1);
    for (unsigned i = 0; i < 3 * made.pixels(); ++i) made.rgb8.push_back(std::uint8_t(generator() >> 8));
    widen(made);
    return made;
  }();
  return p;
}

void compare(std::string ours, std::string theirs, double bar) {
  comparisons().push_back({std::move(ours), std::move(theirs), bar});
}

}  // namespace vrk::bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  vrk::bench::rate_reporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  vrk::bench::print_comparisons(reporter);
}
