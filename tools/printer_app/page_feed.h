// Pages that one thread has, line by line, and another one reads as pictures.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "tools/image/image_reader.h"
#include "tools/raster/raster_layout.h"

namespace vrk::tool {

// PAPPL calls back for every line of a raster stream; a print asks for them. A few lines wait in between, so that a
// page of any size takes the same memory.
class page_feed {
 public:
  explicit page_feed(std::string name) : name_(std::move(name)) {}

  // For the thread that has the pages. False when nobody wants any more.
  bool start_page(const cups_page_header2_t& header);  // throws user_error for a header that is of no page
  bool add_line(const std::uint8_t* line);             // waits until there is room
  bool end_page();                                     // waits until the page is dealt with
  void end();                                          // behind the last page

  // For the thread that reads them.
  std::unique_ptr<image_reader> next_page();  // null behind the last page
  void stop();                                // no more are wanted

 private:
  bool wait_for_reader(std::unique_lock<std::mutex>& lock);
  void take_line(std::uint8_t* to);

  std::string name_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool page_waits_ = false, reader_waits_ = false;           // for each other
  bool complete_ = false, ended_ = false, stopped_ = false;  // no more lines; no more pages; no more wanted
  unsigned page_ = 0;                                        // the current one, from 1
  cups_page_header2_t header_{};
  std::size_t line_bytes_ = 0, capacity_ = 0;  // of the ring, in lines
  std::vector<std::uint8_t> ring_;
  std::size_t added_ = 0, taken_ = 0;  // lines of the page
};

}  // namespace vrk::tool
