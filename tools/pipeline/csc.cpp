#include <vrk.h>

#include "kit/explain.h"
#include "kit/inspect.h"
#include "tools/pipeline/stage.h"
#include "tools/pipeline/stage_handle.h"

namespace vrk::tool {
namespace {

std::uint32_t width_flags(line_format input, unsigned output_bits) {
  return (input.bits == 16 ? VRK_IN16 : 0) | (output_bits == 16 ? VRK_OUT16 : 0);
}

class csc1_stage final : public stage {
 public:
  csc1_stage(const table& colors, line_format input, unsigned output_bits)
      : stage("csc1", {3, output_bits, input.layout}) {
    const std::uint32_t flags = width_flags(input, output_bits);
    if (!handle_.build([&](void* mem) { return vrk_create_csc1(colors.size(), colors.image.data(), flags, mem); })) {
      refuse(colors, kit::why_refused_csc1(colors.image, flags != 0));
    }
    vrk_set_csc1_rgb(handle_.get(), std::uint32_t(input.layout));
    flags_ = flag_words(vrk_query_csc1_hint(handle_.get()), "12-bit precision");
    if (kit::leaves_one_sample(colors.image)) output_ = {1, output_bits};
  }
  ~csc1_stage() override { vrk_free_csc1(handle_.get()); }

  void run(const void* src, std::uint32_t pixels, void* dst) const override {
    vrk_xform_csc1(handle_.get(), src, nullptr, pixels, dst);
  }

 private:
  stage_handle handle_;
};

class csc2_stage final : public stage {
 public:
  csc2_stage(const table& colors, line_format input, unsigned output_bits) : stage("csc2", {1, output_bits}) {
    const std::uint32_t flags = width_flags(input, output_bits);
    if (!handle_.build([&](void* mem) {
          return vrk_create_csc2(colors.size(), colors.image.data(), input.samples, flags, mem);
        })) {
      refuse(colors, kit::why_refused_csc2(colors.image, input.samples, flags != 0));
    }
    vrk_set_csc2_rgb(handle_.get(), std::uint32_t(input.layout));
    flags_ = flag_words(vrk_query_csc2_hint(handle_.get()), "12-bit precision");
    output_.samples = kit::inks_made(colors.image).value_or(1);
  }
  ~csc2_stage() override { vrk_free_csc2(handle_.get()); }

  void run(const void* src, std::uint32_t pixels, void* dst) const override {
    vrk_xform_csc2(handle_.get(), src, pixels, dst);
  }

 private:
  stage_handle handle_;
};

}  // namespace

std::unique_ptr<stage> make_csc1(const table& colors, line_format input, unsigned output_bits) {
  return std::make_unique<csc1_stage>(colors, input, output_bits);
}

std::unique_ptr<stage> make_csc2(const table& colors, line_format input, unsigned output_bits) {
  return std::make_unique<csc2_stage>(colors, input, output_bits);
}

}  // namespace vrk::tool
