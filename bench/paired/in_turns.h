// Candidates for the same work, timed in turns: what else the machine does, and the speed that it gives the core just
// then, meets all of them alike. A ratio is that of two turns of the same round.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace vrk::bench {

struct candidate {
  std::string name;
  std::function<void(unsigned line)> run;                   // line: any number, counted upward; the picture repeats
  std::shared_ptr<const std::vector<std::uint8_t>> output;  // of the last line
};

// Throws std::runtime_error where two candidates write different bytes in one of the first lines.
void require_same_output(std::span<const candidate> candidates, const std::string& work);

struct effort {
  double turn_seconds = 0.002;
  unsigned rounds = 51;
};

// Processor time of this thread, in seconds a line: an entry for each candidate, in it one for each round.
using turn_times = std::vector<std::vector<double>>;
turn_times time_in_turns(std::span<const candidate> candidates, const effort& effort);

struct spread {
  double low, median, high;  // quartiles
};
spread spread_of(std::vector<double> values);

// How many times as fast as `other` the candidate is.
spread ratios(const std::vector<double>& candidate, const std::vector<double>& other);

}  // namespace vrk::bench
