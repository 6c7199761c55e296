// Runs the benchmarks, then prints how the stages compare with other libraries in the same run.
#include <algorithm>
#include <cstdio>
#include <map>

#include "bench/common.h"

namespace vrk::bench {
namespace {

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
