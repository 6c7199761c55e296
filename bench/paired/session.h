// The measurements of one run, each made when it is first asked for.
#pragma once

#include <map>

#include "bench/paired/works.h"

namespace vrk::bench {

inline constexpr const char* before = "before";  // the other build of the library, as a candidate's name

struct result {
  std::string candidate;  // "before", or the name of rows
  double pixel_rate;      // Mpixel/s
  std::vector<double> seconds;
};
using results = std::vector<result>;
const result* find(const results& all, const std::string& candidate);

class session {
 public:
  session(std::optional<library> other, const effort& effort) : other_(std::move(other)), effort_(effort) {}

  // The library whose rows count as those that stood before: the other build, or without one the defined rows.
  const char* reference() const { return other_ ? before : name_of(rows::defined); }

  // All candidates in turns, after their bytes were compared.
  const results& of(const work& w, const input& in, unsigned width);

  // One row's speed on `in` beside its speed on `other`, measured in turns; nothing without such a row.
  std::optional<spread> between_inputs(const work& w, const std::string& candidate, const input& in, const input& other,
                                       unsigned width);

  void write_table(const std::string& path) const;  // all of `of`, separated by tabs

 private:
  std::vector<candidate> candidates(const work& w, const input& in, unsigned width) const;

  struct key {
    std::string work, input;
    unsigned width;
    auto operator<=>(const key&) const = default;
  };
  std::optional<library> other_;
  effort effort_;
  std::map<key, results> measured_{};
};

}  // namespace vrk::bench
