#include "tools/compare.h"

#include <algorithm>

#include "kit/ink_model.h"
#include "kit/photograph.h"
#include "tools/canvas.h"
#include "tools/dots.h"
#include "tools/halftone_choices.h"
#include "tools/print_setup.h"

namespace vrk::tool {
namespace {

// A part of the picture, in its pixels.
struct window {
  unsigned left, top, width, height;
};

window around(detail::place centre, unsigned width, unsigned height, unsigned page_width, unsigned page_height) {
  const auto start = [](unsigned at, unsigned size, unsigned page) {
    return std::min(at > size / 2 ? at - size / 2 : 0, page - size);
  };
  width = std::min(width, page_width);
  height = std::min(height, page_height);
  return {start(centre.x, width, page_width), start(centre.y, height, page_height), width, height};
}

// A part of the picture as its inks: a byte for every ink of every pixel.
struct ink_picture {
  unsigned width, height, inks;
  std::vector<std::uint8_t> samples;

  std::size_t line_bytes() const { return std::size_t{width} * inks; }
  const std::uint8_t* line(unsigned y) const { return &samples[y * line_bytes()]; }
};

ink_picture read_inks(image_reader& source, const window& part, unsigned inks) {
  print_options options;
  if (source.channels() != 4) options.inks = inks;
  const line_format format{source.channels(), source.bits()};
  const pipeline road = make_pipeline(options, choose_tables(options, format), part.width, format);

  pipeline::workspace space(road);
  ink_picture picture{part.width, part.height, road.output().samples, {}};
  picture.samples.resize(part.height * picture.line_bytes());
  std::vector<std::uint8_t> line(source.line_bytes());
  for (unsigned y = 0; y < source.height(); ++y) {  // to the end, so that a broken picture is always found out
    source.read_line(line.data());
    if (y < part.top || y >= part.top + part.height) continue;
    const std::size_t pixel_bytes = source.line_bytes() / source.width();
    road.convert(&line[part.left * pixel_bytes], &picture.samples[(y - part.top) * picture.line_bytes()], space);
  }
  return picture;
}

using pixels = std::vector<pixel>;  // row by row

template <class Linear>
pixel coded(const Linear& color) {
  pixel out;
  for (std::size_t c = 0; c < 3; ++c) out[c] = kit::to_byte(kit::linear_to_srgb(double(color[c])));
  return out;
}

pixels continuous(const ink_picture& inks) {
  pixels out;
  for (std::size_t at = 0; at < inks.samples.size(); at += inks.inks) {
    std::array<double, 6> coverage{};
    for (std::size_t i = 0; i < inks.inks; ++i) coverage[i] = inks.samples[at + i] / 255.0;
    out.push_back(coded(kit::print_color(coverage)));
  }
  return out;
}

pixels halftoned(const ink_picture& inks, halftone& by) {
  pixels out;
  dots row(by.planes(), inks.width);
  std::vector<std::uint8_t> packed(by.output_bytes());
  for (unsigned y = 0; y < inks.height; ++y) {
    by.run(inks.line(y), packed.data());
    row.read_row(packed.data(), 0);
    for (const light& color : row.colors()) out.push_back(coded(color));
  }
  return out;
}

constexpr unsigned cell_width = 384, cell_height = 288;  // of a crop on the sheet, at most

// Cells in rows; all measures in pixels of the sheet.
class sheet {
 public:
  sheet(std::size_t cells, unsigned width, unsigned height, unsigned enlargement)
      : width_(width),
        height_(height),
        enlargement_(enlargement),
        picture_(margin + columns * across(), header + unsigned((cells + columns - 1) / columns) * down()) {}

  void title(const std::string& text, const std::string& more) {
    picture_.write(text, margin, 38, 15);
    picture_.write(more, margin, 64, 10, faint_text);
  }

  // crop: of a picture `stride` pixels wide, beginning at its pixel `first`.
  void add(const std::string& name, const std::string& kind, const pixels& all, std::size_t first, unsigned stride) {
    const unsigned left = margin + next_ % columns * across();
    const unsigned top = header + next_ / columns * down();
    ++next_;
    picture_.write(name, left, top + 15, 12);
    picture_.write(kind, left + across() - margin, top + 15, 8, faint_text, canvas::align::right);
    picture_.fill(left - 1, top + label - 1, width_ * enlargement_ + 2, height_ * enlargement_ + 2, frame);
    for (unsigned y = 0; y < height_; ++y) {
      for (unsigned x = 0; x < width_; ++x) {
        picture_.fill(left + x * enlargement_, top + label + y * enlargement_, enlargement_, enlargement_,
                      all[first + std::size_t{y} * stride + x]);
      }
    }
  }

  void save(const std::filesystem::path& file) const { picture_.save(file); }

 private:
  static constexpr unsigned columns = 4, margin = 24, header = 84, label = 26;
  static constexpr pixel frame{205, 208, 212};

  // From a cell to the next.
  static unsigned across() { return cell_width + margin; }
  unsigned down() const { return label + height_ * enlargement_ + margin; }

  unsigned width_, height_;  // of a crop
  unsigned enlargement_, next_ = 0;
  canvas picture_;
};

std::string plural(unsigned count, const char* of) {
  return std::to_string(count) + " " + of + (count == 1 ? "" : "s");
}

}  // namespace

void write_comparison(image_reader& source, const compare_options& options, const std::filesystem::path& file) {
  const detail::place centre = options.centre.value_or(detail::place{source.width() / 2, source.height() / 2});
  const window crop = around(centre, cell_width / options.enlargement, cell_height / options.enlargement,
                             source.width(), source.height());
  // Error diffusion needs some way to settle, so more is halftoned than shown.
  constexpr unsigned way = 64;
  const unsigned left = crop.left - std::min(crop.left, way), top = crop.top - std::min(crop.top, way);
  const window part{left, top, std::min(source.width(), crop.left + crop.width + way) - left,
                    crop.top + crop.height - top};
  const ink_picture inks = read_inks(source, part, options.inks);

  const std::vector<halftone_choice> choices = halftone_choices();
  sheet cells(choices.size() + 1, crop.width, crop.height, options.enlargement);
  cells.title(std::filesystem::path(source.name()).filename().string(),
              plural(inks.inks, "ink") + ", " + std::to_string(options.levels) + " levels, error diffusion " +
                  (options.noise ? "with noise modulation, " : "without modulation, ") + std::to_string(crop.width) +
                  " x " + std::to_string(crop.height) + " pixels from " + std::to_string(crop.left) + ", " +
                  std::to_string(crop.top));
  const std::size_t first = std::size_t{crop.top - part.top} * part.width + (crop.left - part.left);
  cells.add("continuous tone", "inks as asked for", continuous(inks), first, part.width);
  for (const halftone_choice& choice : choices) {
    const auto by = make_halftone(choice, inks.inks, options.levels, options.noise, inks.width);
    cells.add(choice.name, choice.dither ? "threshold matrix" : "error filter", halftoned(inks, *by), first,
              part.width);
  }
  cells.save(file);
}

}  // namespace vrk::tool
