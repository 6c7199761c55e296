#include "tools/print/plane_files.h"

namespace vrk::tool {

std::unique_ptr<plane_files> open_plane_files(print_format format, output_set& to,
                                              const std::vector<plane_format>& planes, const raster& page,
                                              dot_scale finest) {
  switch (format) {
    case print_format::tiff:
      return open_tiff_planes(to, planes, page, finest);
    default:
      return open_pnm_planes(to, planes, page);
  }
}

}  // namespace vrk::tool
