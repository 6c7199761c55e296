// Pictures in files, by the program's readers, where those are built.
#include <stdexcept>

#include "bench/paired/inputs.h"
#ifdef VRK_BENCH_READERS
#include <algorithm>
#include <filesystem>

#include "tools/page/page.h"
#endif

namespace vrk::bench {

#ifdef VRK_BENCH_READERS

namespace {

// Resampled to the width and the height of a page of such lines, of which every tenth or so is taken.
picture read_picture(const std::filesystem::path& path) {
  std::unique_ptr<tool::image_reader> file = tool::open_image(path.string());
  const unsigned height = picture_width * file->height() / file->width();
  const tool::placement whole{.turn = {},
                              .page_width = picture_width,
                              .page_height = height,
                              .left = 0,
                              .top = 0,
                              .width = picture_width,
                              .height = height,
                              .part_left = 0,
                              .part_top = 0,
                              .part_width = double(file->width()),
                              .part_height = double(file->height()),
                              .resampled = true};
  const auto page = tool::resample(std::move(file), whole);
  const unsigned channels = page->channels(), bytes = page->bits() / 8;
  kit::bytes line(page->line_bytes()), rgb;
  for (unsigned y = 0, taken = 0; y < height; ++y) {
    page->read_line(line.data());
    if (taken * height > y * picture_lines) continue;
    ++taken;
    for (std::size_t x = 0; x < picture_width; ++x) {
      for (unsigned s = 0; s < 3; ++s)
        rgb.push_back(line[(x * channels + (channels < 3 ? 0 : s)) * bytes + bytes - 1]);  // the high byte
    }
  }
  return picture_of(path.filename().string(), std::move(rgb));
}

}  // namespace

std::vector<picture> read_pictures(const std::string& directory) {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  std::vector<picture> pictures;
  for (const auto& path : paths) {
    try {
      pictures.push_back(read_picture(path));
    } catch (const std::exception& e) {
      std::fprintf(stderr, "left out: %s\n", e.what());
    }
  }
  if (pictures.empty()) throw std::runtime_error("no picture in " + directory);
  return pictures;
}

#else

std::vector<picture> read_pictures(const std::string&) {
  throw std::runtime_error("--pictures needs the program's readers: configure with -DVRK_TOOLS=ON");
}

#endif

}  // namespace vrk::bench
