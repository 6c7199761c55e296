#include "tools/print/page_files.h"

namespace vrk::tool {

page_files::page_files(output_set& to, const std::vector<plane_format>& planes, const raster& page, print_format format,
                       plane_order order, const picture_options& pictures, const dot_colors& look,
                       const page_header* from)
    : formats_(planes), dots_(planes, page.width, look) {
  const dot_scale scale = dots_.scale();
  if (pictures.drawn) {
    const pixel_place centre = pictures.detail_centre.value_or(pixel_place{page.width / 2, page.height / 2});
    small_.emplace(to.add("preview.png"), finer(page, scale), pictures.preview_size, look);
    large_.emplace(to.add("detail.png"), finer(page, scale), pixel_place{centre.x * scale.x, centre.y * scale.y}, look);
  }
  planes_ = open_plane_files(format, order, to, planes, page, scale, from);
}

void page_files::add_line(const std::uint8_t* packed) {
  for (unsigned row = 0; row < dots_.scale().y; ++row) {
    drawing_.time([&] {
      dots_.read_row(packed, row);
      if (!small_) return;
      small_->add_row(dots_);
      large_->add_row(dots_);
    });
    writing_.time([&] { planes_->add_row(packed, row, dots_); });
  }
}

void page_files::finish() {
  planes_->finish();
  if (small_) small_->finish();
  if (large_) large_->finish();
}

}  // namespace vrk::tool
