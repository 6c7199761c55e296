#include "tools/printer_app/page_feed.h"

#include <algorithm>
#include <cstring>

#include "tools/pipeline/user_error.h"
#include "tools/raster/raster_page.h"

namespace vrk::tool {
namespace {

constexpr std::size_t ring_bytes = 1 << 20, most_lines = 256;

}  // namespace

bool page_feed::wait_for_reader(std::unique_lock<std::mutex>& lock) {
  changed_.wait(lock, [&] { return reader_waits_ || stopped_; });
  return !stopped_;
}

bool page_feed::start_page(const cups_page_header2_t& header) {
  std::unique_lock lock(mutex_);
  if (!wait_for_reader(lock)) return false;
  ++page_;
  header_ = header;
  line_bytes_ = layout_of(header, name_ + ", page " + std::to_string(page_)).line_bytes();
  capacity_ = std::clamp<std::size_t>(ring_bytes / line_bytes_, 2, most_lines);
  ring_.resize(capacity_ * line_bytes_);
  added_ = taken_ = 0;
  complete_ = reader_waits_ = false;
  page_waits_ = true;
  changed_.notify_all();
  return true;
}

bool page_feed::add_line(const std::uint8_t* line) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return added_ - taken_ < capacity_ || stopped_; });
  if (stopped_) return false;
  std::memcpy(&ring_[added_ % capacity_ * line_bytes_], line, line_bytes_);
  ++added_;
  changed_.notify_all();
  return true;
}

bool page_feed::end_page() {
  std::unique_lock lock(mutex_);
  complete_ = true;
  changed_.notify_all();
  return wait_for_reader(lock);
}

void page_feed::end() {
  const std::lock_guard lock(mutex_);
  ended_ = true;
  changed_.notify_all();
}

std::unique_ptr<image_reader> page_feed::next_page() {
  std::unique_lock lock(mutex_);
  reader_waits_ = true;
  changed_.notify_all();
  changed_.wait(lock, [&] { return page_waits_ || ended_; });
  if (!page_waits_) return nullptr;
  page_waits_ = false;
  const std::string name = name_ + ", page " + std::to_string(page_);
  return std::make_unique<raster_page>(name, layout_of(header_, name), header_,
                                       [this](std::uint8_t* line) { take_line(line); });
}

void page_feed::take_line(std::uint8_t* to) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [&] { return taken_ < added_ || complete_ || ended_; });
  if (taken_ == added_) {
    throw user_error(name_ + ", page " + std::to_string(page_) + ": the stream breaks off after " +
                     std::to_string(added_) + " of " + std::to_string(header_.cupsHeight) + " lines");
  }
  std::memcpy(to, &ring_[taken_ % capacity_ * line_bytes_], line_bytes_);
  ++taken_;
  changed_.notify_all();
}

void page_feed::stop() {
  const std::lock_guard lock(mutex_);
  stopped_ = true;
  changed_.notify_all();
}

}  // namespace vrk::tool
