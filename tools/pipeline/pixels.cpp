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

// What makes 16 bits of a sample.
template <class Sample>
constexpr unsigned scale_to_16 = sizeof(Sample) == 1 ? 257 : 1;

class linked_inks final : public stage {
 public:
  linked_inks(line_format input, std::shared_ptr<const profiles::color_link> link, unsigned output_bits)
      : stage("cmyk to inks", {link->channels(), output_bits}), input_bits_(input.bits), link_(std::move(link)) {}

  void run(const void* src, std::uint32_t pixels, void* dst) const override {
    const profiles::samples inks =
        link_->convert(input_bits_ == 16 ? wide<std::uint16_t>(src, pixels) : wide<std::uint8_t>(src, pixels));
    output_.bits == 16 ? put<std::uint16_t>(inks, dst) : put<std::uint8_t>(inks, dst);
  }

 private:
  template <class Sample>
  static profiles::samples wide(const void* src, std::uint32_t pixels) {
    profiles::samples colors(std::size_t{4} * pixels);
    std::transform(static_cast<const Sample*>(src), static_cast<const Sample*>(src) + colors.size(), colors.begin(),
                   [](unsigned sample) { return std::uint16_t(sample * scale_to_16<Sample>); });
    return colors;
  }
  // The nearest level, or the one below where a limit has to hold.
  template <class Sample>
  void put(const profiles::samples& inks, void* dst) const {
    constexpr unsigned scale = scale_to_16<Sample>;
    const unsigned half = link_->ink_limit() ? 0 : scale / 2;
    std::transform(inks.begin(), inks.end(), static_cast<Sample*>(dst),
                   [half](unsigned ink) { return Sample((ink + half) / scale); });
  }

  unsigned input_bits_;
  std::shared_ptr<const profiles::color_link> link_;
};

class limited_inks final : public stage {
 public:
  limited_inks(line_format input, double percent, double largest)
      : stage("ink limit", input), limit_(percent, largest) {}

  void run(const void* src, std::uint32_t pixels, void* dst) const override {
    output_.bits == 16 ? limit<std::uint16_t>(src, pixels, dst) : limit<std::uint8_t>(src, pixels, dst);
  }

 private:
  template <class Sample>
  void limit(const void* src, std::uint32_t pixels, void* dst) const {
    constexpr unsigned scale = scale_to_16<Sample>;
    const auto* from = static_cast<const Sample*>(src);
    auto* to = static_cast<Sample*>(dst);
    std::array<std::uint16_t, 6> of_pixel{};
    const std::span inks = std::span(of_pixel).first(output_.samples);
    for (; pixels != 0; --pixels, from += inks.size(), to += inks.size()) {
      std::transform(from, from + inks.size(), inks.begin(),
                     [](unsigned sample) { return std::uint16_t(sample * scale); });
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
std::unique_ptr<stage> make_ink_link(line_format input, std::shared_ptr<const profiles::color_link> link,
                                     unsigned output_bits) {
  return std::make_unique<linked_inks>(input, std::move(link), output_bits);
}
std::unique_ptr<stage> make_ink_limit(line_format input, double percent, double largest) {
  return std::make_unique<limited_inks>(input, percent, largest);
}
std::unique_ptr<stage> make_cmyk_to_kcmy(line_format input) { return std::make_unique<cmyk_to_kcmy>(input); }

}  // namespace vrk::tool
