// Gutenprint's EvenTone, error diffusion that looks at the distance of the next dot, on the planes that
// `vrk report --planes` writes: a peer of the kit's error filters (scripts/compare-halftones).
// usage: vrk_eventone together|alone PHOTOGRAPH OUT
// Reads PHOTOGRAPH-k.pgm and its sisters, writes OUT-k.pbm and its sisters. Together, as in its drivers, dots of one
// ink keep away from those of the others, which costs noise in a plane and shifts colours; alone, planes know nothing
// of each other, as ours.
#include <gutenprint/gutenprint.h>

#include <gutenprint/dither.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr std::array<const char*, 4> planes{"-k", "-c", "-m", "-y"};  // in the order of its channels

struct plane {
  int width = 0, height = 0;
  std::vector<char> gray;  // 255 is paper
};

bool read_pgm(const std::string& path, plane& to) {
  std::ifstream file(path, std::ios::binary);
  std::string magic;
  file >> magic;
  int full = 0;
  for (int* const field : {&to.width, &to.height, &full}) {
    while ((file >> std::ws).peek() == '#') file.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    file >> *field;
  }
  file.get();
  if (!file || magic != "P5" || full != 255) return false;
  to.gray.resize(std::size_t(to.width) * std::size_t(to.height));
  return bool(file.read(to.gray.data(), std::streamsize(to.gray.size())));
}

int page_width;  // for a callback that has no other way to know it

// Dots of some planes, one byte line after the other.
std::vector<std::vector<unsigned char>> even_tone(const std::vector<const plane*>& inks) {
  const auto width = std::size_t(page_width), height = std::size_t(inks[0]->height), line_bytes = (width + 7) / 8;
  stp_vars_t* const vars = stp_vars_create();
  stp_set_string_parameter(vars, "DitherAlgorithm", "EvenTone");
  stp_image_t image{};
  image.width = [](stp_image_t*) { return page_width; };
  stp_dither_init(vars, &image, page_width, 600, 600);
  std::vector<std::vector<unsigned char>> lines(inks.size(), std::vector<unsigned char>(line_bytes)), dots(inks.size());
  const double one_dot = 1;
  for (std::size_t p = 0; p < inks.size(); ++p) {
    stp_dither_add_channel(vars, lines[p].data(), unsigned(p), 0);
    stp_dither_set_inks_simple(vars, int(p), 1, &one_dot, 1, 1);
  }
  std::vector<std::uint16_t> line(width * inks.size());
  for (std::size_t y = 0; y < height; ++y) {
    for (std::size_t x = 0; x < width; ++x) {
      for (std::size_t p = 0; p < inks.size(); ++p) {
        const auto gray = static_cast<unsigned char>(inks[p]->gray[y * width + x]);
        line[x * inks.size() + p] = std::uint16_t((255 - gray) * 257);
      }
    }
    for (auto& packed : lines) std::fill(packed.begin(), packed.end(), std::uint8_t{0});
    stp_dither_internal(vars, int(y), line.data(), 0, 0, nullptr);
    for (std::size_t p = 0; p < inks.size(); ++p) dots[p].insert(dots[p].end(), lines[p].begin(), lines[p].end());
  }
  stp_vars_destroy(vars);
  return dots;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string how = argc == 4 ? argv[1] : "";
  if (how != "together" && how != "alone") {
    std::fprintf(stderr, "usage: vrk_eventone together|alone PHOTOGRAPH OUT\n");
    return 2;
  }
  std::array<plane, planes.size()> inks;
  std::vector<const plane*> all;
  for (std::size_t p = 0; p < planes.size(); ++p) {
    const std::string path = argv[2] + std::string(planes[p]) + ".pgm";
    if (!read_pgm(path, inks[p]) || inks[p].width != inks[0].width || inks[p].height != inks[0].height) {
      std::fprintf(stderr, "%s: expected a plane as `vrk report --planes` writes it, of the size of its sisters\n",
                   path.c_str());
      return 1;
    }
    all.push_back(&inks[p]);
  }
  page_width = inks[0].width;

  stp_init();
  std::vector<std::vector<unsigned char>> dots;
  if (how == "together") {
    dots = even_tone(all);
  } else {
    for (const plane* const one : all) dots.push_back(even_tone({one})[0]);
  }
  for (std::size_t p = 0; p < planes.size(); ++p) {
    const std::string path = argv[3] + std::string(planes[p]) + ".pbm";
    std::ofstream file(path, std::ios::binary);
    file << "P4\n" << inks[p].width << " " << inks[p].height << "\n";
    file.write(reinterpret_cast<const char*>(dots[p].data()), std::streamsize(dots[p].size()));
    if (file.flush()) continue;
    std::fprintf(stderr, "%s: cannot be written\n", path.c_str());
    return 1;
  }
  return 0;
}
