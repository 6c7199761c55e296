#include "tools/raster/raster_stream.h"

#include <cstring>
#include <vector>

#include "tools/image/picture_input.h"
#include "tools/pipeline/user_error.h"
#include "tools/raster/raster_page.h"
#include "tools/raster/stream_feed.h"

namespace vrk::tool {

// The stream, a line of libcups at a time.
class raster_stream::source {
 public:
  source(input_file file, const std::string& name, const picture_limits& limits, std::function<void(unsigned)> ended)
      : name_(name),
        limits_(limits),
        ended_(std::move(ended)),
        feed_(std::move(file)),
        raster_(cupsRasterOpenIO(stream_feed::give, &feed_, CUPS_RASTER_READ)) {
    if (raster_ != nullptr) return;
    if (feed_.exhausted()) note_end();
    throw user_error(name_ + ": is neither " + picture_formats + other_formats);
  }

  const picture_limits& limits() const { return limits_; }
  std::string page_name() const { return name_ + ", page " + std::to_string(page_); }

  // False behind the last page.
  bool read_header(cups_page_header2_t& header) {
    std::vector<std::uint8_t> unread(line_bytes_);
    while (lines_left_ != 0) read_line(unread.data());
    if (feed_.exhausted()) {
      note_end();
      if (page_ == 0) throw user_error(name_ + ": holds no page");
      require_all_pages(name_, page_, pages_announced_);
      return false;
    }
    ++page_;
    if (cupsRasterReadHeader2(raster_.get(), &header) == 0) {
      if (feed_.exhausted()) refuse_end("the stream breaks off inside its header");
      throw user_error(page_name() + ": its header has a height, bits or bytes a line out of range");
    }
    pages_announced_ = announced_pages(header);
    return true;
  }

  void start_page(const raster_layout& layout) {
    line_bytes_ = layout.line_bytes();
    lines_left_ = lines_ = layout.lines();
  }

  void read_line(std::uint8_t* to) {
    if (cupsRasterReadPixels(raster_.get(), to, unsigned(line_bytes_)) != line_bytes_) {
      refuse_end("the stream breaks off after " + std::to_string(lines_ - lines_left_) + " of " +
                 std::to_string(lines_) + " lines");
    }
    --lines_left_;
  }

 private:
  void note_end() {
    if (feed_.error() != 0) throw user_error(name_ + ": " + std::strerror(feed_.error()));
    if (ended_) ended_(page_);
  }
  [[noreturn]] void refuse_end(const std::string& why) {
    lines_left_ = 0;
    note_end();
    throw user_error(page_name() + ": " + why);
  }

  std::string name_;
  picture_limits limits_;
  std::function<void(unsigned)> ended_;
  stream_feed feed_;
  std::unique_ptr<cups_raster_t, decltype([](cups_raster_t* raster) { cupsRasterClose(raster); })> raster_;
  unsigned page_ = 0, pages_announced_ = 0;  // the current one, from 1; 0: none is announced
  std::size_t line_bytes_ = 0;
  std::uint64_t lines_ = 0, lines_left_ = 0;  // of the current page
};

// Colours that come one after the other: the last one is needed for the first line.
class raster_stream::whole_page final : public raster_page {
 public:
  whole_page(source& from, const raster_layout& layout, const cups_page_header2_t& header)
      : raster_page(from.page_name(), layout, header, {}) {
    const std::uint64_t bytes = layout.lines() * line_.size();
    require_memory("planar", bytes, from.limits().memory);
    // Not touched before there are samples for it.
    whole_ = std::make_unique_for_overwrite<std::uint8_t[]>(bytes);
    for (std::uint64_t y = 0; y < layout.lines(); ++y) from.read_line(&whole_[y * line_.size()]);
  }

  void read_line(void* line) override {
    for (std::size_t i = 0; i < rows_.size(); ++i) rows_[i] = &whole_[(i * height_ + next_) * line_.size()];
    ++next_;
    arrange(layout_, rows_, line);
  }

 private:
  std::unique_ptr<std::uint8_t[]> whole_;
  std::size_t next_ = 0;
};

raster_stream::raster_stream(input_file file, const std::string& name, const picture_limits& limits,
                             std::function<void(unsigned)> ended)
    : source_(std::make_shared<source>(std::move(file), name, limits, std::move(ended))) {}

std::unique_ptr<image_reader> raster_stream::next_page() {
  cups_page_header2_t header;
  if (!source_->read_header(header)) return nullptr;
  const raster_layout layout = layout_of(header, source_->page_name(), source_->limits());
  source_->start_page(layout);
  if (layout.order == CUPS_ORDER_PLANAR) return std::make_unique<whole_page>(*source_, layout, header);
  return std::make_unique<raster_page>(source_->page_name(), layout, header,
                                       [from = source_](std::uint8_t* line) { from->read_line(line); });
}

}  // namespace vrk::tool
