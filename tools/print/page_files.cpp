#include "tools/print/page_files.h"

namespace vrk::tool {

page_files::page_files(output_set& to, const std::vector<plane_format>& planes, unsigned width, unsigned height,
                       pixel_place detail_centre)
    : dots_(planes, width),
      small_(to.add("preview.png"), width, height, dots_.scale()),
      large_(to.add("detail.png"), width, height, dots_.scale(), detail_centre) {
  for (const plane_format& plane : planes) {
    const std::string name = std::string(plane.name) + (plane.bits == 1 ? ".pbm" : ".pgm");
    const unsigned across = width * plane.scale.x, down = height * plane.scale.y;
    files_.push_back({&plane, name,
                      plane.bits == 1 ? write_pbm(to.add(name), across, down)
                                      : write_pgm(to.add(name), across, down, plane.levels() - 1)});
  }
}

void page_files::add_line(const std::uint8_t* packed) {
  for (unsigned row = 0; row < dots_.scale().y; ++row) {
    drawing_.time([&] {
      dots_.read_row(packed, row);
      small_.add_row(dots_.colors());
      large_.add_row(dots_.colors());
    });
  }
  writing_.time([&] {
    for (std::size_t p = 0; p < files_.size(); ++p) write_plane(files_[p], packed, dots_.codes(p));
  });
}

void page_files::write_plane(const plane_file& plane, const std::uint8_t* packed,
                             const std::vector<std::uint8_t>& codes) {
  const plane_format& format = *plane.format;
  if (format.bits == 1) {
    for (unsigned y = 0; y < format.scale.y; ++y) {
      plane.file->write_line(packed + format.offset + y * format.line_bytes);
    }
    return;
  }
  grays_.resize(codes.size());
  for (std::size_t x = 0; x < codes.size(); ++x) grays_[x] = std::uint8_t(format.levels() - 1 - codes[x]);
  plane.file->write_line(grays_.data());
}

void page_files::finish() {
  for (const plane_file& plane : files_) plane.file->finish();
  small_.finish();
  large_.finish();
}

}  // namespace vrk::tool
