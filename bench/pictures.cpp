#include "bench/pictures.h"

#include <random>

#include "pictures/photograph.h"
#include "pictures/sample_page.h"

namespace vrk::bench {

picture picture_of(std::string name, std::vector<std::uint8_t> rgb8) {
  picture made{std::move(name), picture_width, unsigned(rgb8.size() / (3 * picture_width)), std::move(rgb8), {}};
  std::minstd_rand noise(2);
  for (const unsigned v : made.rgb8) made.rgb16.push_back(std::uint16_t(v << 8 | (noise() >> 8 & 0xFF)));
  return made;
}

const picture& photographic() {
  static const picture p = [] {
    // Every tenth line of a page of such lines, so that all regions of the picture are in it.
    const kit::bytes page = pictures::photograph(picture_width, picture_lines * 10);
    std::vector<std::uint8_t> rgb8;
    for (unsigned y = 0; y < picture_lines; ++y) {
      const auto line = page.begin() + std::ptrdiff_t(y) * 10 * 3 * picture_width;
      rgb8.insert(rgb8.end(), line, line + 3 * picture_width);
    }
    return picture_of("photo", std::move(rgb8));
  }();
  return p;
}

const picture& uniform_random() {
  static const picture p = [] {
    std::vector<std::uint8_t> rgb8(std::size_t{3} * picture_width * picture_lines);
    std::minstd_rand generator(1);
    for (std::uint8_t& sample : rgb8) sample = std::uint8_t(generator() >> 8);
    return picture_of("random", std::move(rgb8));
  }();
  return p;
}

const picture& page_with_paper() {
  static const picture p = [] {
    const pictures::sample_page page(picture_width, picture_width * 297 / 210);
    std::vector<std::uint8_t> rgb8(std::size_t{3} * picture_width * picture_lines);
    for (unsigned y = 0; y < picture_lines; ++y) {
      page.draw_line(page.height() * y / picture_lines, &rgb8[std::size_t{3} * picture_width * y]);
    }
    return picture_of("page", std::move(rgb8));
  }();
  return p;
}

}  // namespace vrk::bench
