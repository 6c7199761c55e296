#include <vrk.h>

#include <algorithm>
#include <cstring>

#include "kit/profiles/ink_limit.h"
#include "tools/pipeline/stage.h"

namespace vrk::tool {
namespace {

class gray_to_rgb final : public stage {
 public:
  explicit gray_to_rgb(line_format input) : stage("gray to rgb", {3, input.bits}) {}

  void run(const void* src, std::uint32_t pixels, void* dst) const override {
    output_.bits == 16 ? spread<std::uint16_t>(src, pixels, dst) : spread<std::uint8_t>(src, pixels, dst);
  }

 private:
  template <class Sample>
  static void spread(const void* src, std::uint32_t pixels, void* dst) {
    const auto* gray = static_cast<const Sample*>(src);
    auto* rgb = static_cast<Sample*>(dst);
    for (; pixels != 0; --pixels, ++gray) rgb = std::fill_n(rgb, 3, *gray);
  }
};

class narrow final : public stage {
 public:
  explicit narrow(line_format input) : stage("16 to 8 bits", {input.samples, 8, input.layout}) {}

  void run(const void* src, std::uint32_t pixels, void* dst) const override {
    const auto* const wide = static_cast<const std::uint16_t*>(src);
    const std::size_t samples = output_.pixel_bytes() * pixels;
    // The nearest level: 255 / 65535 is 1 / 257.
    std::transform(wide, wide + samples, static_cast<std::uint8_t*>(dst),
                   [](unsigned sample) { return std::uint8_t((sample + 128) / 257); });
  }
};

class layout_change final : public stage {
 public:
  layout_change(line_format input, pixel_layout layout) : stage("layout", {3, input.bits, layout}) {}

  void run(const void* src, std::uint32_t pixels, void* dst) const override {
    output_.bits == 16 ? move<std::uint16_t>(src, pixels, dst) : move<std::uint8_t>(src, pixels, dst);
  }

 private:
  template <class Sample>
  void move(const void* src, std::uint32_t pixels, void* dst) const {
    const auto* from = static_cast<const Sample*>(src);
    auto* to = static_cast<Sample*>(dst);
    const bool blue_first = output_.layout == pixel_layout::bgr || output_.layout == pixel_layout::bgrx;
    const unsigned first = output_.layout == pixel_layout::xrgb ? 1 : 0;
    const unsigned red = first + (blue_first ? 2 : 0), blue = first + (blue_first ? 0 : 2);
    const unsigned step = 3 + output_.padded();
    for (; pixels != 0; --pixels, from += 3, to += step) {
      to[red] = from[0];
      to[first + 1] = from[1];
      to[blue] = from[2];
    }
  }
};

class cmyk_to_kcmy final : public stage {
 public:
  explicit cmyk_to_kcmy(line_format input) : stage("cmyk to kcmy", input) {}

  void run(const void* src, std::uint32_t pixels, void* dst) const override {
    std::memcpy(dst, src, output_.pixel_bytes() * pixels);
    output_.bits == 16 ? vrk_cmyk_to_kcmy_16(pixels, dst) : vrk_cmyk_to_kcmy_8(pixels, static_cast<std::uint8_t*>(dst));
  }
};

class limited_inks final : public stage {
 public:
  limited_inks(line_format input, double percent) : stage("ink limit", input), limit_(percent, 400) {}

  void run(const void* src, std::uint32_t pixels, void* dst) const override {
    output_.bits == 16 ? limit<std::uint16_t, 1>(src, pixels, dst) : limit<std::uint8_t, 257>(src, pixels, dst);
  }

 private:
  // scale: what makes 16 bits of a sample.
  template <class Sample, unsigned scale>
  void limit(const void* src, std::uint32_t pixels, void* dst) const {
    const auto* from = static_cast<const Sample*>(src);
    auto* to = static_cast<Sample*>(dst);
    for (; pixels != 0; --pixels, from += 4, to += 4) {
      std::array<std::uint16_t, 4> inks;
      std::transform(from, from + 4, inks.begin(), [](unsigned sample) { return std::uint16_t(sample * scale); });
      limit_.apply(inks);
      std::transform(inks.begin(), inks.end(), to, [](unsigned ink) { return Sample(ink / scale); });
    }
  }

  profiles::ink_limiter limit_;
};

}  // namespace

std::unique_ptr<stage> make_gray_to_rgb(line_format input) { return std::make_unique<gray_to_rgb>(input); }
std::unique_ptr<stage> make_narrow(line_format input) { return std::make_unique<narrow>(input); }
std::unique_ptr<stage> make_layout(line_format input, pixel_layout layout) {
  return std::make_unique<layout_change>(input, layout);
}
std::unique_ptr<stage> make_ink_limit(line_format input, double percent) {
  return std::make_unique<limited_inks>(input, percent);
}
std::unique_ptr<stage> make_cmyk_to_kcmy(line_format input) { return std::make_unique<cmyk_to_kcmy>(input); }

}  // namespace vrk::tool
