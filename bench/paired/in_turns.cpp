#include "bench/paired/in_turns.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <stdexcept>

namespace vrk::bench {
namespace {

constexpr unsigned compared_lines = 40;

double thread_seconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return double(now.tv_sec) + 1e-9 * double(now.tv_nsec);
}

double seconds_of(const candidate& c, unsigned first_line, unsigned lines) {
  const double start = thread_seconds();
  for (unsigned line = first_line; line != first_line + lines; ++line) c.run(line);
  return thread_seconds() - start;
}

}  // namespace

void require_same_output(std::span<const candidate> candidates, const std::string& work) {
  for (unsigned line = 0; line < compared_lines; ++line) {
    for (const candidate& c : candidates) {
      c.run(line);
      if (*c.output == *candidates[0].output) continue;
      throw std::runtime_error(work + ": " + c.name + " and " + candidates[0].name + " write different bytes in line " +
                               std::to_string(line));
    }
  }
}

turn_times time_in_turns(std::span<const candidate> candidates, const effort& effort) {
  unsigned lines = 1;
  while (seconds_of(candidates[0], compared_lines, lines) < effort.turn_seconds && lines < 1u << 30) lines *= 2;
  turn_times times(candidates.size());
  for (unsigned round = 0; round < effort.rounds; ++round) {
    for (std::size_t i = 0; i < candidates.size(); ++i) {
      const std::size_t turn = round % 2 == 0 ? i : candidates.size() - 1 - i;  // nobody always follows the same one
      times[turn].push_back(seconds_of(candidates[turn], round * lines, lines) / lines);
    }
  }
  return times;
}

spread spread_of(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const auto at = [&](double share) { return values[std::size_t(std::lround(share * double(values.size() - 1)))]; };
  return {at(0.25), at(0.5), at(0.75)};
}

spread ratios(const std::vector<double>& candidate, const std::vector<double>& other) {
  std::vector<double> all;
  for (std::size_t round = 0; round < candidate.size(); ++round) all.push_back(other[round] / candidate[round]);
  return spread_of(std::move(all));
}

}  // namespace vrk::bench
