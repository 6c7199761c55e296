#include <cctype>
#include <sstream>
#include <vector>

#include "tools/image/image_reader.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

// PBM, PGM and PPM in their plain and raw forms ("P1" ... "P6"), and PAM ("P7"). Samples are brought to 8 bits, or to
// 16 when the file has more than 255 levels.
class pnm_reader final : public image_reader {
 public:
  pnm_reader(input_file file, const std::string& name, const picture_limits& limits)
      : image_reader(name), file_(std::move(file)) {
    std::getc(file_.get());  // 'P'
    const int form = std::getc(file_.get());
    if (form == '7') {
      read_pam_header();
    } else if (form >= '1' && form <= '6') {
      read_header(form - '0');
    } else {
      refuse("begins as PNM files do, but is none: expected \"P1\" to \"P7\"");
    }
    check_header(limits);
  }

  void read_line(void* line) override {
    if (!plain_ && max_ == 255) {
      read_bytes(line, line_bytes());
    } else {
      plain_ ? read_plain_line() : read_raw_line();
      bits_ == 16 ? scale_line(static_cast<std::uint16_t*>(line)) : scale_line(static_cast<std::uint8_t*>(line));
    }
    if (++lines_read_ == height_) check_end();
  }

 private:
  [[noreturn]] void refuse(const std::string& why) const { throw user_error(name_ + ": " + why); }
  [[noreturn]] void refuse_short() const { refuse("the file ends before the picture does"); }

  // Forms 1 and 4: bits, 1 for black; 2 and 5: gray; 3 and 6: R, G, B; 1 to 3 as decimal text.
  void read_header(int form) {
    plain_ = form <= 3;
    bitmap_ = form % 3 == 1;
    channels_ = form % 3 == 0 ? 3 : 1;
    width_ = read_number();
    height_ = read_number();
    max_ = bitmap_ ? 1 : read_number();
    if (std::feof(file_.get()) != 0) refuse_short();
  }

  void read_pam_header() {
    std::string key, type;
    while (key != "ENDHDR") {
      std::istringstream line(read_header_line());
      key.clear();
      line >> key;
      if (key == "WIDTH") line >> width_;
      if (key == "HEIGHT") line >> height_;
      if (key == "DEPTH") line >> channels_;
      if (key == "MAXVAL") line >> max_;
      if (key == "TUPLTYPE") line >> type;
    }
    if (channels_ == 4 && type != "CMYK") channels_ = 0;
  }

  void check_header(const picture_limits& limits) {
    if (max_ < 1 || max_ > 0xFFFF) refuse("has samples up to " + std::to_string(max_) + ", expected 1 to 65535");
    if (channels_ != 1 && channels_ != 3 && channels_ != 4) refuse("holds neither gray, RGB nor CMYK");
    bits_ = max_ > 255 ? 16 : 8;
    require_size(limits);
    row_.resize(std::size_t{width_} * channels_);
    const unsigned full = bits_ == 16 ? 0xFFFF : 0xFF;
    for (unsigned sample = 0; sample <= max_; ++sample) {
      levels_.push_back(std::uint16_t((std::uint64_t{sample} * full + max_ / 2) / max_));
    }
  }

  // One character of text; a comment reads as the end of its line.
  int read_character() {
    int c = std::getc(file_.get());
    if (c == '#') {
      while (c != '\n' && c != EOF) c = std::getc(file_.get());
    }
    return c;
  }
  int read_after_blanks() {
    int c = read_character();
    while (std::isspace(c) != 0) c = read_character();
    if (c == EOF) refuse_short();
    return c;
  }
  // A decimal number, and the blank or the end of the file behind it. Digits after 100 million are dropped: no field of
  // the format may be so large.
  unsigned read_number() {
    unsigned number = 0;
    int c = read_after_blanks();
    for (; c != EOF && std::isspace(c) == 0; c = read_character()) {
      if (std::isdigit(c) == 0) refuse("is damaged: something other than a number stands among its numbers");
      number = number < 100000000 ? 10 * number + unsigned(c - '0') : number;
    }
    return number;
  }
  std::string read_header_line() {
    std::string line;
    for (int c = std::getc(file_.get()); c != '\n'; c = std::getc(file_.get())) {
      if (c == EOF) refuse_short();
      if (line.size() == 1000) refuse("is damaged: a line of its header has more than 1000 characters");
      line += char(c);
    }
    return line;
  }

  void read_plain_line() {
    for (unsigned& sample : row_) {
      if (!bitmap_) {
        sample = read_number();
        continue;
      }
      const int c = read_after_blanks();  // bits need no blanks between them
      if (c != '0' && c != '1') refuse("is damaged: something other than 0 and 1 stands among its bits");
      sample = c == '0';
    }
  }

  void read_bytes(void* to, std::size_t count) {
    if (std::fread(to, 1, count, file_.get()) != count) refuse_short();
  }
  void read_raw_line() {
    const std::size_t sample_bytes = bits_ / 8;
    bytes_.resize(bitmap_ ? (row_.size() + 7) / 8 : row_.size() * sample_bytes);
    read_bytes(bytes_.data(), bytes_.size());
    for (std::size_t i = 0; i < row_.size(); ++i) {
      if (bitmap_) {
        row_[i] = (bytes_[i / 8] >> (7 - i % 8) & 1) == 0;
      } else {
        row_[i] = sample_bytes == 1 ? bytes_[i] : unsigned(bytes_[2 * i] << 8 | bytes_[2 * i + 1]);
      }
    }
  }

  // The format allows more pictures behind the first. Blanks are not worth a complaint.
  void check_end() {
    int c = std::getc(file_.get());
    while (std::isspace(c) != 0) c = std::getc(file_.get());
    if (c == 'P') refuse("holds more than one picture, expected one");
    if (c != EOF) refuse("goes on behind its picture");
  }

  template <class Sample>
  void scale_line(Sample* to) const {
    for (const unsigned sample : row_) {
      if (sample > max_)
        refuse("has a sample of " + std::to_string(sample) + ", expected 0 to " + std::to_string(max_));
      *to++ = Sample(levels_[sample]);
    }
  }

  input_file file_;
  bool plain_ = false, bitmap_ = false;
  unsigned lines_read_ = 0;
  unsigned max_ = 0;                   // the sample that stands for white, or for all the ink
  std::vector<std::uint16_t> levels_;  // of every sample 0 ... max_, at 8 or 16 bits
  std::vector<unsigned> row_;          // samples of one line as the file has them
  std::vector<std::uint8_t> bytes_;    // of one raw line
};

}  // namespace

std::unique_ptr<image_reader> read_pnm(input_file file, const std::string& name, const picture_limits& limits) {
  return std::make_unique<pnm_reader>(std::move(file), name, limits);
}

}  // namespace vrk::tool
