#include <vrk.h>

#include "kit/explain.h"
#include "tools/pipeline/stage.h"
#include "tools/pipeline/stage_handle.h"

namespace vrk::tool {
namespace {

// The library is not told how long a curve image is: it must hold what its header announces.
const void* checked(const std::optional<table>& curves, unsigned count) {
  if (!curves) return nullptr;
  if (const kit::refusal why = kit::why_refused_curves(curves->image, count)) refuse(*curves, why);
  return curves->image.data();
}

void require(bool built) {
  if (!built) throw user_error("the pre-processor refuses its settings");
}

std::uint32_t preproc_flags(unsigned output_bits) { return VRK_COMPOSE | (output_bits == 16 ? VRK_OUT16 : 0); }

class preproc_stage final : public stage {
 public:
  preproc_stage(const tone_settings& s, line_format input, unsigned output_bits)
      : stage("preproc", {3, output_bits, input.layout}) {
    const void* const curve = checked(s.curve, 1);
    const void* const rgb_curves = checked(s.rgb_curves, 3);
    require(handle_.build([&](void* mem) {
      return vrk_create_preproc(s.balance ? s.balance->data() : nullptr, std::uint32_t(s.lift),
                                std::uint32_t(s.contrast), curve != nullptr, curve, rgb_curves != nullptr, rgb_curves,
                                preproc_flags(output_bits), mem);
    }));
    vrk_set_preproc_rgb(handle_.get(), std::uint32_t(input.layout));
    flags_ = flag_words(vrk_query_preproc_hint(handle_.get()), "10-bit steps");
  }
  ~preproc_stage() override { vrk_free_preproc(handle_.get()); }

  void run(const void* src, std::uint32_t pixels, void* dst) const override {
    vrk_xform_preproc(handle_.get(), src, nullptr, pixels, dst);
  }

 private:
  stage_handle handle_;
};

class preproc2_stage final : public stage {
 public:
  preproc2_stage(const tone_settings& s, line_format input, unsigned output_bits)
      : stage("preproc2", {3, output_bits, input.layout}) {
    const void* const curve = checked(s.curve, 1);
    const void* const rgb_curves = checked(s.rgb_curves, 3);
    require(handle_.build([&](void* mem) {
      return vrk_create_preproc2(s.balance2->data(), std::uint32_t(s.contrast), curve != nullptr, curve,
                                 rgb_curves != nullptr, rgb_curves, preproc_flags(output_bits), mem);
    }));
    vrk_set_preproc2_rgb(handle_.get(), std::uint32_t(input.layout));
    flags_ = flag_words(vrk_query_preproc2_hint(handle_.get()), "10-bit steps");
  }
  ~preproc2_stage() override { vrk_free_preproc2(handle_.get()); }

  void run(const void* src, std::uint32_t pixels, void* dst) const override {
    vrk_xform_preproc2(handle_.get(), src, nullptr, pixels, dst);
  }

 private:
  stage_handle handle_;
};

}  // namespace

std::unique_ptr<stage> make_preproc(const tone_settings& settings, line_format input, unsigned output_bits) {
  if (settings.balance2) return std::make_unique<preproc2_stage>(settings, input, output_bits);
  return std::make_unique<preproc_stage>(settings, input, output_bits);
}

}  // namespace vrk::tool
