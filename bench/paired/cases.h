// The works of each table, by name, and the built-in inputs.
#pragma once

#include <array>
#include <utility>

#include "base/cpu_level.h"
#include "bench/paired/works.h"

namespace vrk::bench {

inline constexpr unsigned usual_width = 4961;  // A4 at 600 dpi
inline constexpr std::array<unsigned, 5> widths{64, 192, 2000, usual_width, 100000};

const input& photo_input();
const input& random_input();
const input& page_input();  // with paper white, its planes the kit's inks

const std::vector<work>& grids_of_8_bits();  // of working precision, three and four channels
const std::vector<work>& grids_of_8_bits_and_6_inks();
const std::vector<work>& grids_of_12_bits();
const std::vector<work>& gray_works();
const std::array<work, 3>& diffusion_of_four();  // planes: 8-10, 8-8, 16-10
const work& diffusion_of_six();
const std::vector<work>& diffusion_of_one();
const std::vector<work>& dithers(unsigned bits);  // 1, 2 or 4
const std::vector<work>& width_works();
const std::vector<std::pair<work, unsigned>>& hard_cases();  // with the width of their lines

}  // namespace vrk::bench
