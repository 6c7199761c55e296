// Pages through a pipe, from the process that decodes them to the one that prints them.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/image/image_reader.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {

// What goes through the pipe, each with what it holds behind it.
enum class page_message : std::uint32_t {
  page,           // its header, and the texts and bytes that the header announces
  line,           // of the page, line_bytes() bytes
  end,            // behind the last page
  stream_ends,    // a number: the pages that a stream had
  failure,        // text: the sentence of a user_error
  wrong_usage,    // the same of a usage_error
  out_of_memory,  // text
};

class page_pipe_writer {
 public:
  explicit page_pipe_writer(int pipe) : pipe_(pipe) {}

  // Sends all pages of the source with all their lines, and what it throws.
  template <class NextPage>
  void send_all(const NextPage& next) {
    while (const std::unique_ptr<image_reader> page = next()) send(*page);
    send(page_message::end);
    flush();
  }
  void send_end_of_stream(unsigned pages);
  void send_failure(page_message kind, const std::string& sentence);

 private:
  void send(image_reader& page);
  void send(page_message kind) { put(&kind, sizeof kind); }
  void put(const void* data, std::size_t bytes);
  void flush();

  int pipe_;
  std::vector<std::uint8_t> buffer_;
};

// Does not believe the other side: what it sends is held against the limits. Throws user_error, with the name of the
// input in front.
class page_pipe_reader {
 public:
  // ended: called with the number of pages of a stream that has ended. why_ended: the sentence for a pipe that ends too
  // early
  page_pipe_reader(int pipe, std::string name, const picture_limits& limits, std::function<void(unsigned)> ended,
                   std::function<std::string()> why_ended)
      : pipe_(pipe),
        name_(std::move(name)),
        limits_(limits),
        ended_(std::move(ended)),
        why_ended_(std::move(why_ended)),
        buffer_(1 << 16) {}

  std::unique_ptr<image_reader> next_page();

 private:
  class page;

  page_message take_message();  // but for stream_ends
  void take_line(void* to, std::size_t bytes);
  [[noreturn]] void take_failure(page_message kind);
  [[noreturn]] void refuse() const;
  std::string take_text(std::uint64_t bytes);
  void take(void* to, std::size_t bytes);

  int pipe_;
  std::string name_;
  picture_limits limits_;
  std::function<void(unsigned)> ended_;
  std::function<std::string()> why_ended_;
  std::vector<std::uint8_t> buffer_;
  std::size_t begin_ = 0, end_ = 0;  // of what was read and not taken
  std::size_t line_bytes_ = 0;       // of the current page
  std::uint64_t lines_left_ = 0;
};

}  // namespace vrk::tool
