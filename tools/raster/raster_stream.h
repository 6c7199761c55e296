// Raster streams, as print systems send them to drivers: CUPS raster (versions 1 to 3), PWG raster and Apple raster.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "tools/image/image_reader.h"

namespace vrk::tool {

// Whether a file that begins with these bytes may be a raster stream, in either byte order.
constexpr bool begins_raster_stream(int first, int second) {
  return (first == 'R' && second == 'a') || (first == 'U' && second == 'N') ||
         ((first == 't' || first == '2' || first == '3') && second == 'S');
}

class raster_stream {
 public:
  // limits: of memory, for a page whose colours come one after the other. ended: called where the stream ends, with the
  // number of pages that it had; throws when it knows better why there are no more. Throws user_error when this is no
  // raster stream.
  raster_stream(input_file file, const std::string& name, const picture_limits& limits,
                std::function<void(unsigned)> ended = {});

  // The next page, or null behind the last one. Its resolution is the header's. What was not read of the page before is
  // passed over. Throws user_error, naming the page, when the stream breaks off or a header is wrong.
  std::unique_ptr<image_reader> next_page();

 private:
  class source;
  class whole_page;

  std::shared_ptr<source> source_;
};

}  // namespace vrk::tool
