// Pages of raster streams, as pictures.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/image/image_reader.h"
#include "tools/raster/raster_layout.h"

namespace vrk::tool {

// Colours that come pixel by pixel or line by line. The page has the resolution of its header.
class raster_page : public image_reader {
 public:
  // read: fills layout.line_bytes() with the next line, as the stream has it
  raster_page(const std::string& name, const raster_layout& layout, const cups_page_header2_t& header,
              std::function<void(std::uint8_t*)> read);

  void read_line(void* line) override;

 protected:
  raster_layout layout_;
  std::function<void(std::uint8_t*)> read_;
  std::vector<std::uint8_t> line_;
  std::vector<const std::uint8_t*> rows_;  // of each colour, or the one of all colours
};

// How many pages the stream has by the header of one; 0 where it does not say.
unsigned announced_pages(const cups_page_header2_t& header);

// Throws user_error when a stream has ended after fewer pages than announced.
void require_all_pages(const std::string& name, unsigned came, unsigned announced);

}  // namespace vrk::tool
