// How good the dots of error diffusion tables are, by the measures of the report.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kit/ed_tables.h"
#include "kit/modulation.h"
#include "tools/review/measure/ink_plane.h"

namespace vrk::search {

struct tables {
  kit::edtb_table distribution;
  kit::modulation modulation;
};

struct figures {
  std::vector<double> noise;   // of every plane that has ink, after Gaussians of 2 and of 4 pixels in turns
  std::vector<double> colors;  // of every photograph: mean colour difference, lightness noise, chroma noise
  std::vector<double> lines;   // of every tint: tool::strongest_direction
};

class judge {
 public:
  // Paths of photographs, which are separated as a print in four inks.
  explicit judge(const std::vector<std::string>& photographs);

  figures measure(const tables& of) const;

  // Smaller is better. Both figures over those of the tables that are to be beaten.
  struct score {
    double fine, coarse;                   // mean over planes
    double difference, lightness, chroma;  // mean over photographs
    double lines, worst_lines;             // mean and largest of the tints

    double cost() const;
  };
  static score compare(const figures& now, const figures& before);

 private:
  struct picture {
    unsigned width, height;
    std::vector<std::uint8_t> samples;
    std::vector<tool::ink_plane> inks;
  };
  static picture separated(const std::string& path);

  std::vector<picture> pictures_;
};

}  // namespace vrk::search
