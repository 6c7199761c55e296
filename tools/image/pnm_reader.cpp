#include <netpbm/pam.h>

#include <cstring>

#include "tools/image/c_library.h"
#include "tools/image/image_reader.h"

namespace vrk::tool {
namespace {

c_failure* listener = nullptr;  // the library reports to a plain function; one picture is read at a time

// Samples are brought to 8 bits, or to 16 when the file has more than 255 levels.
class pnm_reader final : public image_reader {
 public:
  pnm_reader(input_file file, const std::string& name) : image_reader(name), file_(std::move(file)) {
    listener = &failure_;
    pm_setusererrormsgfn(
        [](const char* text) { std::snprintf(listener->message, sizeof listener->message, "%s", text); });
    pm_setusermessagefn([](const char*) {});
    pm_setjmpbuf(&failure_.come_back);
    run_c(failure_, name_, [this] {
      pnm_readpaminit(file_.get(), &pam_, int(sizeof pam_));
      const bool cmyk = pam_.depth == 4 && std::strcmp(pam_.tuple_type, "CMYK") == 0;
      if (pam_.depth != 1 && pam_.depth != 3 && !cmyk) failure_.jump("holds neither gray, RGB nor CMYK");
      row_ = pnm_allocpamrow(&pam_);
    });
    width_ = unsigned(pam_.width);
    height_ = unsigned(pam_.height);
    channels_ = pam_.depth;
    bits_ = pam_.maxval > 255 ? 16 : 8;
  }
  ~pnm_reader() override {
    pm_freerow(row_);
    pm_setjmpbuf(nullptr);
  }
  pnm_reader(const pnm_reader&) = delete;
  pnm_reader& operator=(const pnm_reader&) = delete;

  void read_line(void* line) override {
    run_c(failure_, name_, [this] { pnm_readpamrow(&pam_, row_); });
    if (bits_ == 16) {
      scale(static_cast<std::uint16_t*>(line), 0xFFFF);
    } else {
      scale(static_cast<std::uint8_t*>(line), 0xFF);
    }
  }

 private:
  template <class Sample>
  void scale(Sample* to, unsigned long full) const {
    const unsigned long max = pam_.maxval;
    for (unsigned x = 0; x < width_; ++x) {
      for (unsigned c = 0; c < channels_; ++c) {
        const unsigned long sample = row_[x][c];
        *to++ = Sample(max == full ? sample : (sample * full + max / 2) / max);
      }
    }
  }

  input_file file_;
  c_failure failure_;
  struct pam pam_ {};
  tuple* row_ = nullptr;
};

}  // namespace

std::unique_ptr<image_reader> read_pnm(input_file file, const std::string& name) {
  return std::make_unique<pnm_reader>(std::move(file), name);
}

}  // namespace vrk::tool
