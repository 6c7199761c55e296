#include "tools/raster/raster_page.h"

#include <utility>

#include "kit/profiles/plain_profile.h"
#include "tools/pipeline/user_error.h"
#include "tools/raster/page_header.h"

namespace vrk::tool {

raster_page::raster_page(const std::string& name, const raster_layout& layout, const cups_page_header2_t& header,
                         std::function<void(std::uint8_t*)> read)
    : image_reader(name), layout_(layout), read_(std::move(read)), line_(layout.line_bytes()) {
  width_ = layout.width;
  height_ = layout.height;
  channels_ = layout.channels;
  bits_ = layout.bits == 16 ? 16 : 8;
  dpi_ = resolution{double(header.HWResolution[0]), double(header.HWResolution[1])};
  header_ = std::make_shared<page_header>(page_header{header});
  if (layout.adobe_rgb) profile_ = profiles::adobe_rgb_profile();
  rows_.resize(layout.order == CUPS_ORDER_CHUNKED ? 1 : layout.channels);
}

void raster_page::read_line(void* line) {
  if (is_arranged(layout_)) return read_(static_cast<std::uint8_t*>(line));
  read_(line_.data());
  for (std::size_t i = 0; i < rows_.size(); ++i) rows_[i] = &line_[i * layout_.row_bytes()];
  arrange(layout_, rows_, line);
}

// What other streams have there is a matter between a driver and its filters.
unsigned announced_pages(const cups_page_header2_t& header) {
  return page_header{header}.is_pwg() ? header.cupsInteger[CUPS_RASTER_PWG_TotalPageCount] : 0;
}

void require_all_pages(const std::string& name, unsigned came, unsigned announced) {
  if (came >= announced) return;
  throw user_error(name + ": ends after page " + std::to_string(came) + ", expected " + std::to_string(announced) +
                   " pages");
}

}  // namespace vrk::tool
