#include "tools/sandbox/page_pipe.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <new>

#include "tools/raster/page_header.h"

namespace vrk::tool {
namespace {

constexpr std::size_t part = 1 << 16;  // bytes that go through the pipe together
constexpr std::uint32_t longest_text = 1 << 16;

// Of a page, as both sides, which are one program, have it in memory.
struct sent_page {
  unsigned width, height, channels, bits;
  resolution dpi;
  std::uint8_t has_dpi, has_header, exchanged, from_right, from_bottom;  // 0: no
  std::uint64_t name_bytes, profile_bytes, described_bytes, origin_bytes;
};

}  // namespace

void page_pipe_writer::send(image_reader& page) {
  sent_page sent{};
  sent.width = page.width();
  sent.height = page.height();
  sent.channels = page.channels();
  sent.bits = page.bits();
  sent.has_dpi = page.dpi().has_value();
  sent.dpi = page.dpi().value_or(resolution{});
  sent.has_header = page.header() != nullptr;
  const auto [exchanged, from_right, from_bottom] = page.seen();
  sent.exchanged = exchanged;
  sent.from_right = from_right;
  sent.from_bottom = from_bottom;
  sent.name_bytes = page.name().size();
  sent.profile_bytes = page.profile().size();
  sent.described_bytes = page.colors().profile.size();
  sent.origin_bytes = page.colors().origin.size();
  send(page_message::page);
  put(&sent, sizeof sent);
  put(page.name().data(), page.name().size());
  put(page.profile().data(), page.profile().size());
  put(page.colors().profile.data(), page.colors().profile.size());
  put(page.colors().origin.data(), page.colors().origin.size());
  if (sent.has_header != 0) put(&page.header()->cups, sizeof page.header()->cups);
  std::vector<std::uint8_t> line(page.line_bytes());
  for (unsigned y = 0; y < page.height(); ++y) {
    page.read_line(line.data());
    send(page_message::line);
    put(line.data(), line.size());
  }
  flush();  // the next page may be long in coming
}

void page_pipe_writer::send_end_of_stream(unsigned pages) {
  send(page_message::stream_ends);
  put(&pages, sizeof pages);
}

void page_pipe_writer::send_failure(page_message kind, const std::string& sentence) {
  const auto bytes = std::uint32_t(std::min<std::size_t>(sentence.size(), longest_text));
  send(kind);
  put(&bytes, sizeof bytes);
  put(sentence.data(), bytes);
  flush();
}

void page_pipe_writer::put(const void* data, std::size_t bytes) {
  const auto* const from = static_cast<const std::uint8_t*>(data);
  buffer_.insert(buffer_.end(), from, from + bytes);
  if (buffer_.size() >= part) flush();
}

void page_pipe_writer::flush() {
  for (std::size_t done = 0; done < buffer_.size();) {
    const ssize_t count = ::write(pipe_, &buffer_[done], buffer_.size() - done);
    if (count < 0 && errno != EINTR) _exit(1);  // nobody wants the pages any more
    done += std::size_t(std::max<ssize_t>(count, 0));
  }
  buffer_.clear();
}

class page_pipe_reader::page final : public image_reader {
 public:
  page(page_pipe_reader& from, const sent_page& sent, std::string name) : image_reader(std::move(name)), from_(from) {
    width_ = sent.width;
    height_ = sent.height;
    channels_ = sent.channels;
    bits_ = sent.bits;
    if (sent.has_dpi != 0) dpi_ = sent.dpi;
    seen_ = {sent.exchanged != 0, sent.from_right != 0, sent.from_bottom != 0};
    const std::string profile = from.take_text(sent.profile_bytes);
    profile_.assign(profile.begin(), profile.end());
    colors_.profile = from.take_text(sent.described_bytes);
    colors_.origin = from.take_text(sent.origin_bytes);
    if (sent.has_header == 0) return;
    auto header = std::make_shared<page_header>();
    from.take(&header->cups, sizeof header->cups);
    const auto* const texts = reinterpret_cast<const std::uint8_t*>(&header->cups);
    if (std::find(texts + offsetof(cups_page_header2_t, MediaType), texts + sizeof header->cups, 0) ==
        texts + sizeof header->cups) {
      from.refuse();  // texts that end nowhere
    }
    header_ = std::move(header);
  }

  void read_line(void* line) override { from_.take_line(line, line_bytes()); }

 private:
  page_pipe_reader& from_;
};

std::unique_ptr<image_reader> page_pipe_reader::next_page() {
  std::vector<std::uint8_t> unread(line_bytes_);
  while (lines_left_ != 0) take_line(unread.data(), unread.size());
  const page_message kind = take_message();
  if (kind == page_message::end) return nullptr;
  if (kind != page_message::page) take_failure(kind);
  sent_page sent;
  take(&sent, sizeof sent);
  const bool colors = sent.channels == 1 || sent.channels == 3 || sent.channels == 4;
  const bool right = limits_.admit(sent.width, sent.height) && colors && (sent.bits == 8 || sent.bits == 16) &&
                     std::isfinite(sent.dpi.x) && std::isfinite(sent.dpi.y) && sent.dpi.x >= 0 && sent.dpi.y >= 0 &&
                     sent.name_bytes <= longest_text && sent.profile_bytes <= limits_.memory &&
                     sent.described_bytes <= longest_text && sent.origin_bytes <= longest_text;
  if (!right) refuse();
  auto next = std::make_unique<page>(*this, sent, take_text(sent.name_bytes));
  line_bytes_ = next->line_bytes();
  lines_left_ = next->height();
  return next;
}

page_message page_pipe_reader::take_message() {
  for (;;) {
    page_message kind{};
    take(&kind, sizeof kind);
    if (kind != page_message::stream_ends) return kind;
    unsigned pages = 0;
    take(&pages, sizeof pages);
    if (ended_) ended_(pages);
  }
}

void page_pipe_reader::take_line(void* to, std::size_t bytes) {
  const page_message kind = take_message();
  if (kind == page_message::line && lines_left_ != 0) {
    --lines_left_;
    return take(to, bytes);
  }
  lines_left_ = 0;
  take_failure(kind);
}

void page_pipe_reader::take_failure(page_message kind) {
  if (kind == page_message::out_of_memory) throw std::bad_alloc();
  if (kind != page_message::failure && kind != page_message::wrong_usage) refuse();
  std::uint32_t bytes = 0;
  take(&bytes, sizeof bytes);
  if (bytes > longest_text) refuse();
  const std::string sentence = take_text(bytes);
  if (kind == page_message::wrong_usage) throw usage_error(sentence);
  throw user_error(sentence);
}

void page_pipe_reader::refuse() const { throw user_error(name_ + ": its confined decoder tells of no picture"); }

// By parts: more may be announced than comes.
std::string page_pipe_reader::take_text(std::uint64_t bytes) {
  std::string text;
  while (text.size() < bytes) {
    const std::size_t had = text.size();
    text.resize(std::size_t(std::min<std::uint64_t>(bytes, had + part)));
    take(&text[had], text.size() - had);
  }
  return text;
}

void page_pipe_reader::take(void* to, std::size_t bytes) {
  for (auto* next = static_cast<std::uint8_t*>(to); bytes != 0;) {
    if (begin_ == end_) {
      const ssize_t count = ::read(pipe_, buffer_.data(), buffer_.size());
      if (count < 0 && errno == EINTR) continue;
      if (count <= 0) {
        lines_left_ = 0;
        throw user_error(name_ + ": " + why_ended_());
      }
      begin_ = 0;
      end_ = std::size_t(count);
    }
    const std::size_t there = std::min(bytes, end_ - begin_);
    std::memcpy(next, &buffer_[begin_], there);
    begin_ += there;
    next += there;
    bytes -= there;
  }
}

}  // namespace vrk::tool
