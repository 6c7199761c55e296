#include "tools/print/plane_files.h"

#include <array>

namespace vrk::tool {

std::unique_ptr<plane_files> open_plane_files(print_format format, plane_order order, output_set& to,
                                              const std::vector<plane_format>& planes, const raster& page,
                                              dot_scale finest, const page_header* from) {
  switch (format) {
    case print_format::tiff:
      return open_tiff_planes(to, planes, page, finest);
    case print_format::cups:
      return open_cups_planes(order, to, planes, page, finest, from);
    case print_format::pwg:
      return open_pwg_planes(to, planes, page, finest, from);
    default:
      return open_pnm_planes(to, planes, page);
  }
}

void pack_samples(dots& of, std::size_t plane, const plane_format& format, unsigned bits, std::size_t first,
                  std::size_t step, std::uint8_t* line) {
  const unsigned highest = format.levels() - 1, full = (1U << bits) - 1;
  std::array<std::uint8_t, 256> samples{};
  for (unsigned code = 0; code <= highest; ++code) {
    samples[code] = std::uint8_t((code * full + highest / 2) / highest);
  }
  const unsigned repeat = of.scale().x / format.scale.x;
  std::size_t bit = first;
  for (const std::uint8_t code : of.codes(plane)) {
    for (unsigned i = 0; i < repeat; ++i, bit += step) {
      std::uint8_t& to = line[bit / 8];
      to = std::uint8_t(to | samples[code] << (8 - bits - bit % 8));
    }
  }
}

}  // namespace vrk::tool
