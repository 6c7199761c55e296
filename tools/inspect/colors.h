// What a colour table makes of colours, by the library.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/pipeline/stage.h"

namespace vrk::tool {

class colors_made {
 public:
  // A "csc1" or "csc2" table that the library takes.
  explicit colors_made(const table& image);

  const std::vector<std::string>& channel_names() const { return names_; }

  // rgb: three samples a pixel, 0 ... 65535. Returns a sample for every channel of each pixel, in percent of full scale
  // with two decimals.
  std::vector<double> of(const std::vector<std::uint16_t>& rgb) const;

  // For every channel, what becomes of R = G = B = 0 ... 255.
  std::vector<std::vector<double>> neutral_ramps() const;

 private:
  std::unique_ptr<stage> converter_;
  std::vector<std::string> names_;
};

}  // namespace vrk::tool
