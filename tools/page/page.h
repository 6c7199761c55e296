// Pages: pictures brought to a size on paper.
#pragma once

#include <memory>

#include "tools/image/image_reader.h"
#include "tools/page/placement.h"

namespace vrk::tool {

// The page, to be read as a picture: turned as its file and the options ask for, resampled where a pixel of the picture
// is not one of the page, centred, and white around it. Its resolution is the page's.
std::unique_ptr<image_reader> lay_out(std::unique_ptr<image_reader> picture, const page_options& options);

// The steps of it.

// Lines of a picture that stands upside down or on its side are kept in a temporary file without a name, and read back
// in strips: the memory is the same for every picture.
std::unique_ptr<image_reader> turn(std::unique_ptr<image_reader> picture, orientation by);

// What `to` shows of the picture, by a Lanczos filter of three lobes, R, G, B and gray in linear light, inks as shares
// of the paper. No sample leaves the range of those under the filter's middle lobe.
std::unique_ptr<image_reader> resample(std::unique_ptr<image_reader> picture, const placement& to);

// The picture on its page.
std::unique_ptr<image_reader> add_margins(std::unique_ptr<image_reader> picture, const placement& to);

}  // namespace vrk::tool
