// The files that hold the planes of a print.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/files/output_set.h"
#include "tools/print/dots.h"
#include "tools/print/preview.h"
#include "tools/print/print_options.h"

namespace vrk::tool {

struct page_header;

// Where a plane is found.
struct plane_place {
  std::string file;
  raster size;
  unsigned bits;                     // per dot
  std::optional<unsigned> sample{};  // which one of each pixel, where the file holds several planes
};

class plane_files {
 public:
  virtual ~plane_files() = default;

  const std::vector<plane_place>& places() const { return places_; }  // of every plane, in their order

  // One row of dots, which `of` has just read. packed: the line of pixels that this row is a part of, as the halftone
  // wrote it.
  virtual void add_row(const std::uint8_t* packed, unsigned row, dots& of) = 0;
  virtual void finish() = 0;  // after the last row

 protected:
  std::vector<plane_place> places_;
};

// planes: stay where they are. page: in pixels of the picture. finest: the scale of the grid of dots. from: what the
// page's stream said about it, for raster streams; may be null.
std::unique_ptr<plane_files> open_plane_files(print_format format, plane_order order, output_set& to,
                                              const std::vector<plane_format>& planes, const raster& page,
                                              dot_scale finest, const page_header* from);

// A PBM or PGM file for each plane: the packed lines of one of 1 bit, any other as a gray picture, in which white is no
// ink.
std::unique_ptr<plane_files> open_pnm_planes(output_set& to, const std::vector<plane_format>& planes,
                                             const raster& page);

inline constexpr const char* tiff_planes_name = "print.tif";

// One TIFF file for all: C, M, Y, K and light inks, 0 for no ink. A dot of a coarser plane is repeated.
std::unique_ptr<plane_files> open_tiff_planes(output_set& to, const std::vector<plane_format>& planes,
                                              const raster& page, dot_scale finest);

inline constexpr const char* cups_planes_name = "print.ras";
inline constexpr const char* pwg_planes_name = "print.pwg";
inline constexpr unsigned raster_stream_start = 4;  // bytes in front of the first page

// One page of CUPS raster: K, KCMY or KCMYcm in the depth of the planes; where they are chunky, six inks of 1 or 2 bits
// are the last ones of 8 or 16. Or of PWG raster: K of 1 bit, else K or CMYK of 8. 0 for no ink. A dot of a coarser
// plane is repeated. Throws usage_error for what such a stream cannot hold.
std::unique_ptr<plane_files> open_cups_planes(plane_order order, output_set& to,
                                              const std::vector<plane_format>& planes, const raster& page,
                                              dot_scale finest, const page_header* from);
std::unique_ptr<plane_files> open_pwg_planes(output_set& to, const std::vector<plane_format>& planes,
                                             const raster& page, dot_scale finest, const page_header* from);

// Adds the dots of a plane's row to a line of samples, each of so many bits, the first one at bit `first` and the
// others `step` bits apart. The highest level becomes the highest sample, the others lie evenly below. plane: of `of`.
void pack_samples(dots& of, std::size_t plane, const plane_format& format, unsigned bits, std::size_t first,
                  std::size_t step, std::uint8_t* line);

}  // namespace vrk::tool
