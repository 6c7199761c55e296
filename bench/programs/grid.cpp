// One colour grid in the forms that several programs take, a page to convert with it, and a program that does so with
// the library: for scripts/compare-programs.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>

#include "bench/lcms.h"
#include "kit/color_grids.h"
#include "kit/color_table.h"
#include "pictures/sample_page.h"
#include "vrk.h"

namespace {

using vrk::kit::bytes;

constexpr unsigned page_width = 4961, page_height = 7016;  // A4 at 600 dpi

std::ofstream created(const std::string& path) {
  std::ofstream file(path, std::ios::binary);
  file.exceptions(std::ios::failbit | std::ios::badbit);
  return file;
}

void write_files(const std::string& folder) {
  const vrk::kit::color_grid grid = vrk::kit::matrix_grid(vrk::kit::saturation_matrix(1.2), 17);
  vrk::kit::color_table table;
  table.grid = grid;
  const bytes image = table.encode();
  created(folder + "/grid.csc1").write(reinterpret_cast<const char*>(image.data()), std::streamsize(image.size()));

  std::ofstream cube = created(folder + "/grid.cube");  // the red index runs fastest there
  cube << "LUT_3D_SIZE " << grid.points << '\n';
  for (unsigned i = 0; i < grid.points * grid.points * grid.points; ++i) {
    const unsigned n = grid.points, point = i % n * n * n + i / n % n * n + i / (n * n);
    for (unsigned c = 0; c < 3; ++c) cube << grid.samples[point * 3 + c] / 65535.0 << (c < 2 ? ' ' : '\n');
  }
#ifdef VRK_BENCH_LCMS2
  const cmsHPROFILE link = vrk::bench::link_profile(grid, 2.4);
  cmsSaveProfileToFile(link, (folder + "/grid.icc").c_str());
  cmsCloseProfile(link);
#endif

  std::ofstream page = created(folder + "/page.ppm");
  page << "P6\n" << page_width << ' ' << page_height << "\n255\n";
  const vrk::pictures::sample_page drawn(page_width, page_height);
  bytes line(3 * page_width);
  for (unsigned y = 0; y < page_height; ++y) {
    drawn.draw_line(y, line.data());
    page.write(reinterpret_cast<const char*>(line.data()), std::streamsize(line.size()));
  }
}

// A PPM, from its first line on.
struct ppm {
  std::ifstream file;
  unsigned width, height;

  explicit ppm(const std::string& path) : file(path, std::ios::binary) {
    std::string magic;
    unsigned most = 0;
    file >> magic >> width >> height >> most;
    if (magic != "P6" || most != 255 || file.get() == EOF) throw std::runtime_error(path + " is no PPM of 8 bits");
  }
  void read(bytes& line) {
    line.resize(3 * width);
    if (!file.read(reinterpret_cast<char*>(line.data()), std::streamsize(line.size()))) {
      throw std::runtime_error("a PPM ends early");
    }
  }
};

void convert(const std::string& table_path, const std::string& from, const std::string& to) {
  std::ifstream table_file(table_path, std::ios::binary);
  const bytes table{std::istreambuf_iterator<char>(table_file), {}};
  bytes handle(vrk_create_csc1(std::uint32_t(table.size()), table.data(), 0, nullptr));
  if (handle.empty() || vrk_create_csc1(std::uint32_t(table.size()), table.data(), 0, handle.data()) == 0) {
    throw std::runtime_error(table_path + " was refused");
  }
  ppm in(from);
  std::ofstream out = created(to);
  out << "P6\n" << in.width << ' ' << in.height << "\n255\n";
  bytes line, converted(3 * in.width);
  for (unsigned y = 0; y < in.height; ++y) {
    in.read(line);
    vrk_xform_csc1(handle.data(), line.data(), nullptr, in.width, converted.data());
    out.write(reinterpret_cast<const char*>(converted.data()), std::streamsize(converted.size()));
  }
}

// Programs round in different ways; more than that would be another work.
void compare(const std::string& one_path, const std::string& other_path) {
  ppm one(one_path), other(other_path);
  if (one.width != other.width || one.height != other.height) throw std::runtime_error("pictures of different sizes");
  bytes a, b;
  int largest = 0;
  for (unsigned y = 0; y < one.height; ++y) {
    one.read(a);
    other.read(b);
    for (std::size_t i = 0; i < a.size(); ++i) largest = std::max(largest, std::abs(a[i] - b[i]));
  }
  std::printf("%d\n", largest);
  if (largest > 3) throw std::runtime_error(other_path + " differs by " + std::to_string(largest) + " levels");
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  try {
    if (words.size() == 2 && words[0] == "files") return write_files(words[1]), 0;
    if (words.size() == 4 && words[0] == "convert") return convert(words[1], words[2], words[3]), 0;
    if (words.size() == 3 && words[0] == "compare") return compare(words[1], words[2]), 0;
  } catch (const std::exception& e) {
    return std::fprintf(stderr, "vrk_grid: %s\n", e.what()), 1;
  }
  return std::fputs("usage: vrk_grid files DIR | convert TABLE IN.ppm OUT.ppm | compare ONE.ppm OTHER.ppm\n", stderr),
         2;
}
