#include "tools/review/compare.h"

#include <algorithm>

#include "kit/ink_model.h"
#include "kit/srgb.h"
#include "tools/drawing/sheet.h"
#include "tools/print/dots.h"
#include "tools/review/halftone_choices.h"
#include "tools/review/ink_picture.h"

namespace vrk::tool {
namespace {

using pixels = std::vector<pixel>;  // row by row

template <class Light>
pixel pixel_of(const Light& color) {
  pixel out;
  for (std::size_t c = 0; c < 3; ++c) out[c] = kit::srgb_bytes::of_levels().of_light(double(color[c]));
  return out;
}

pixels continuous(const ink_picture& inks) {
  pixels out;
  for (std::size_t at = 0; at < inks.samples.size(); at += inks.inks) {
    std::array<double, 6> coverage{};
    for (std::size_t i = 0; i < inks.inks; ++i) coverage[i] = inks.samples[at + i] / 255.0;
    out.push_back(pixel_of(kit::print_color(coverage)));
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
    for (const light& color : row.colors()) out.push_back(pixel_of(color));
  }
  return out;
}

constexpr unsigned cell_width = 384, cell_height = 288;  // of a crop on the sheet, at most

// Draws the same crop of one picture after the other into the cells of the sheet, enlarged.
class crop_drawer {
 public:
  // first: the crop's first pixel in pictures that are `stride` pixels wide
  crop_drawer(sheet& cells, const window& crop, unsigned enlargement, std::size_t first, unsigned stride)
      : cells_(cells), crop_(crop), enlargement_(enlargement), first_(first), stride_(stride) {}

  void add(std::string_view name, std::string_view kind, const pixels& all) {
    const auto [left, top] = cells_.add(name, kind);
    canvas& picture = cells_.picture();
    picture.fill(left - 1, top - 1, crop_.width * enlargement_ + 2, crop_.height * enlargement_ + 2, frame);
    for (unsigned y = 0; y < crop_.height; ++y) {
      for (unsigned x = 0; x < crop_.width; ++x) {
        picture.fill(left + x * enlargement_, top + y * enlargement_, enlargement_, enlargement_,
                     all[first_ + std::size_t{y} * stride_ + x]);
      }
    }
  }

 private:
  static constexpr pixel frame{205, 208, 212};

  sheet& cells_;
  window crop_;
  unsigned enlargement_;
  std::size_t first_;
  unsigned stride_;
};

std::string describe(unsigned inks, const compare_options& options, const window& crop) {
  const auto number = [](unsigned n) { return std::to_string(n); };
  return number(inks) + (inks == 1 ? " ink, " : " inks, ") + number(options.levels) + " levels, error diffusion " +
         (options.noise ? "with noise modulation, " : "without modulation, ") + number(crop.width) + " x " +
         number(crop.height) + " pixels from " + number(crop.left) + ", " + number(crop.top);
}

}  // namespace

void write_comparison(image_reader& source, const compare_options& options, output_file& to) {
  if (options.centre) require_inside("--crop", *options.centre, source.width(), source.height());
  const pixel_place centre = options.centre.value_or(pixel_place{source.width() / 2, source.height() / 2});
  const window crop = around(centre, cell_width / options.enlargement, cell_height / options.enlargement,
                             source.width(), source.height());
  // Error diffusion takes some pixels to reach its tone, so more is halftoned than shown.
  constexpr unsigned margin = 64;
  const unsigned left = crop.left - std::min(crop.left, margin), top = crop.top - std::min(crop.top, margin);
  const window part{left, top, std::min(source.width(), crop.left + crop.width + margin) - left,
                    crop.top + crop.height - top};
  const ink_picture inks = read_inks(source, part, options.inks);

  const std::vector<halftone_choice> choices = halftone_choices();
  sheet cells(1 + choices.size(), cell_width, crop.height * options.enlargement);
  cells.title(std::filesystem::path(source.name()).filename().string(), describe(inks.inks, options, crop));
  crop_drawer drawer(cells, crop, options.enlargement,
                     std::size_t{crop.top - part.top} * part.width + (crop.left - part.left), part.width);
  drawer.add("continuous tone", "before halftoning", continuous(inks));
  for (const halftone_choice& choice : choices) {
    const auto by = make_halftone(choice, inks.inks, options.levels, options.noise, inks.width);
    drawer.add(choice.name, choice.dither ? "threshold matrix" : "error filter", halftoned(inks, *by));
  }
  cells.picture().save(to);
}

}  // namespace vrk::tool
