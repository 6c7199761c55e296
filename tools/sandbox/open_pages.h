// All pages of an input, decoded here or in a process of their own that can do nothing else.
#pragma once

#include <functional>
#include <memory>

#include "tools/image/picture_input.h"

namespace vrk::tool {

using page_supply = std::function<std::unique_ptr<image_reader>()>;  // null behind the last page
using end_of_stream = std::function<void(unsigned pages)>;

// Of a raster stream, all pages; else the one picture. ended: as raster_stream calls it.
page_supply open_pages(picture_input input, const picture_limits& limits, bool sandbox, end_of_stream ended = {});

// What `open` makes of the input, in a process that confine() has confined. Pages come through a pipe, and so do the
// sentences of what is thrown there. A process that breaks its bounds, or breaks down, is an error of its input. Throws
// user_error where there can be no such process.
page_supply open_confined(picture_input input, const picture_limits& limits,
                          const std::function<page_supply(picture_input, end_of_stream)>& open, end_of_stream ended);

}  // namespace vrk::tool
