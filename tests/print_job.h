// Prints small pages as the program would, for tests.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "kit/color_table.h"
#include "kit/presets.h"
#include "tests/scratch.h"
#include "tools/image_reader.h"
#include "tools/print_page.h"

namespace vrk::test {

// A colour table that gives every colour the same inks: shares of full ink, in sixteenths of 255.
inline kit::bytes constant_inks(unsigned inks) {
  kit::color_table colors;
  colors.grid = {2, inks, {}};
  for (unsigned point = 0; point < 8; ++point) {
    for (unsigned ink = 0; ink < inks; ++ink) colors.grid.samples.push_back(std::uint16_t(65535 * (ink + 1) / 8));
  }
  return colors.encode();
}

inline std::string flat_page(unsigned across, unsigned down) {
  std::string page = "P6 " + std::to_string(across) + " " + std::to_string(down) + " 255\n";
  return page.append(std::size_t{3} * across * down, '\x80');
}

using change = std::function<void(tool::print_options&)>;

// What remains of a print when its pictures are left out.
struct printed {
  std::vector<double> coverage;
  std::string planes;
};

class print_job : public scratch {
 protected:
  // With a small table of four inks, unless the change asks for others.
  printed print(const std::string& page, const change& set) const {
    tool::print_options options;
    set(options);
    if (!options.inks && options.csc2.empty() && page.find(".pam") == std::string::npos) options.csc2 = few_points_;
    const auto image = tool::open_image(page);
    printed result;
    for (const auto& plane : tool::print_page(*image, options, dir_ / "out").planes) {
      result.coverage.push_back(plane.coverage);
      result.planes += load(dir_ / "out" / plane.file);
    }
    return result;
  }

  // Nothing in it is alike, and it is high enough for many bands of lines.
  std::string busy_page() const {
    std::string page = "P6 97 400 255\n";
    for (unsigned i = 0; i < 97 * 400; ++i) {
      for (unsigned c = 0; c < 3; ++c) page += char(i * (3 + c) / 7 + i / 97 * (c + 1));
    }
    return save("busy.ppm", page);
  }

 private:
  std::string few_points_ = save("few_points.csc2", kit::ink_table(4, 5).encode());
};

}  // namespace vrk::test
