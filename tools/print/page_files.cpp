#include "tools/print/page_files.h"

namespace vrk::tool {

page_files::page_files(output_set& to, const std::vector<plane_format>& planes, const raster& page,
                       const picture_options& pictures, const dot_colors& look)
    : page_(page), dots_(planes, page.width, look) {
  const dot_scale scale = dots_.scale();
  if (pictures.drawn) {
    const pixel_place centre = pictures.detail_centre.value_or(pixel_place{page.width / 2, page.height / 2});
    small_.emplace(to.add("preview.png"), finer(page, scale), pictures.preview_size, look);
    large_.emplace(to.add("detail.png"), finer(page, scale), pixel_place{centre.x * scale.x, centre.y * scale.y}, look);
  }
  for (const plane_format& plane : planes) {
    const std::string name = std::string(plane.name) + (plane.bits == 1 ? ".pbm" : ".pgm");
    const auto [width, height, dpi] = finer(page, plane.scale);
    files_.push_back({&plane, name,
                      plane.bits == 1 ? write_pbm(to.add(name), width, height, dpi)
                                      : write_pgm(to.add(name), width, height, plane.levels() - 1, dpi)});
  }
}

void page_files::add_line(const std::uint8_t* packed) {
  for (unsigned row = 0; row < dots_.scale().y; ++row) {
    drawing_.time([&] {
      dots_.read_row(packed, row);
      if (!small_) return;
      const std::vector<light>& colors = dots_.colors();
      small_->add_row(colors);
      large_->add_row(colors);
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
  if (small_) small_->finish();
  if (large_) large_->finish();
}

}  // namespace vrk::tool
