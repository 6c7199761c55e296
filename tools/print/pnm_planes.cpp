#include "tools/image/image_writer.h"
#include "tools/print/plane_files.h"

namespace vrk::tool {
namespace {

class pnm_planes final : public plane_files {
 public:
  pnm_planes(output_set& to, const std::vector<plane_format>& planes, const raster& page) : planes_(planes) {
    for (const plane_format& plane : planes) {
      const std::string name = std::string(plane.name) + (plane.bits == 1 ? ".pbm" : ".pgm");
      const raster size = finer(page, plane.scale);
      output_file& file = to.add(name);
      places_.push_back({name, size, plane.bits});
      files_.push_back(plane.bits == 1 ? write_pbm(file, size.width, size.height, size.dpi)
                                       : write_pgm(file, size.width, size.height, plane.levels() - 1, size.dpi));
    }
  }

  void add_row(const std::uint8_t* packed, unsigned row, dots& of) override {
    for (std::size_t p = 0; p < planes_.size(); ++p) {
      const plane_format& plane = planes_[p];
      if (row % (of.scale().y / plane.scale.y) != 0) continue;  // a dot of this plane is higher
      if (plane.bits == 1) {
        files_[p]->write_line(of.packed_line(packed, row, p));
        continue;
      }
      const std::vector<std::uint8_t>& codes = of.codes(p);
      grays_.resize(codes.size());
      for (std::size_t x = 0; x < codes.size(); ++x) grays_[x] = std::uint8_t(plane.levels() - 1 - codes[x]);
      files_[p]->write_line(grays_.data());
    }
  }

  void finish() override {
    for (const auto& file : files_) file->finish();
  }

 private:
  const std::vector<plane_format>& planes_;
  std::vector<std::unique_ptr<image_writer>> files_;
  std::vector<std::uint8_t> grays_;
};

}  // namespace

std::unique_ptr<plane_files> open_pnm_planes(output_set& to, const std::vector<plane_format>& planes,
                                             const raster& page) {
  return std::make_unique<pnm_planes>(to, planes, page);
}

}  // namespace vrk::tool
