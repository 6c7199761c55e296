#include "bench/paired/session.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace vrk::bench {

const char* name_of(rows choice) {
  constexpr const char* names[] = {"chosen", "SSE4.1", "base", "defined"};
  return names[int(choice)];
}

const result* find(const results& all, const std::string& candidate) {
  const auto found = std::ranges::find(all, candidate, &result::candidate);
  return found == all.end() ? nullptr : &*found;
}

std::vector<candidate> session::candidates(const work& w, const input& in, unsigned width) const {
  std::vector<candidate> all;
  const auto add = [&](std::optional<candidate> made, const char* name) {
    if (!made) return;
    made->name = name;
    all.push_back(std::move(*made));
  };
  if (other_) add(w.candidate_for(*other_, rows::chosen, in, width), before);
  for (const rows choice : all_rows) add(w.candidate_for({}, choice, in, width), name_of(choice));
  return all;
}

const results& session::of(const work& w, const input& in, unsigned width) {
  results& all = measured_[{w.name, in.name, width}];
  if (!all.empty()) return all;
  const std::vector<candidate> in_turns = candidates(w, in, width);
  require_same_output(in_turns, w.name);
  const turn_times times = time_in_turns(in_turns, effort_);
  for (std::size_t i = 0; i < times.size(); ++i) {
    all.push_back({in_turns[i].name, width * 1e-6 / spread_of(times[i]).median, times[i]});
  }
  return all;
}

std::optional<spread> session::between_inputs(const work& w, const std::string& candidate_name, const input& in,
                                              const input& other, unsigned width) {
  std::vector<candidate> pair;
  for (const input* const each : {&in, &other}) {
    const std::vector<candidate> all = candidates(w, *each, width);
    require_same_output(all, w.name);
    const auto found = std::ranges::find(all, candidate_name, &candidate::name);
    if (found == all.end()) return {};
    pair.push_back(*found);
  }
  const turn_times times = time_in_turns(pair, effort_);
  return ratios(times[0], times[1]);
}

void session::write_table(const std::string& path) const {
  std::ofstream out(path);
  out << "work\tinput\twidth\trows\tMpixel/s\tns/pixel\tlow\tmedian\thigh\n";  // ratios to the reference, quartiles
  for (const auto& [key, all] : measured_) {
    const result* const other = find(all, reference());
    for (const result& r : all) {
      const spread ratio = other == nullptr ? spread{} : ratios(r.seconds, other->seconds);
      char numbers[100];
      std::snprintf(numbers, sizeof numbers, "%.1f\t%.3f\t%.3f\t%.3f\t%.3f", r.pixel_rate, 1e3 / r.pixel_rate,
                    ratio.low, ratio.median, ratio.high);
      out << key.work << '\t' << key.input << '\t' << key.width << '\t' << r.candidate << '\t' << numbers << '\n';
    }
  }
  if (!out.flush()) throw std::runtime_error(path + " cannot be written");
}

}  // namespace vrk::bench
