#include <vrk.h>

#include "kit/explain.h"
#include "kit/inspect.h"
#include "tools/pipeline/stage.h"
#include "tools/pipeline/stage_handle.h"

namespace vrk::tool {
namespace {

std::uint32_t postproc_flags(line_format input, unsigned output_bits) {
  return VRK_COMPOSE | VRK_MID10 | (input.bits == 16 ? VRK_IN16 : 0) | (output_bits == 16 ? VRK_OUT16 : 0);
}

// The library is not told how long the images are: they must hold what their headers announce.
void check_lengths(const plane_curves& curves, unsigned planes) {
  if (curves.main) {
    if (const kit::refusal why = kit::why_refused_main_curves(curves.main->image, planes)) {
      refuse(*curves.main, why);
    }
  }
  for (const std::optional<table>& curve : curves.planes) {
    if (!curve) continue;
    if (const kit::refusal why = kit::why_refused_plane_curve(curve->image)) refuse(*curve, why);
  }
}

class postproc_stage final : public stage {
 public:
  postproc_stage(const plane_curves& curves, line_format input, unsigned output_bits)
      : stage("postproc", {input.samples, output_bits}) {
    check_lengths(curves, input.samples);
    output_.samples = planes_made(curves, input.samples);
    const auto image = [](const std::optional<table>& t) -> const void* { return t ? t->image.data() : nullptr; };
    const auto& [k, c, m, y, fifth, sixth] = curves.planes;
    if (!handle_.build([&](void* mem) {
          return vrk_create_postproc(input.samples, curves.main.has_value(), image(curves.main), k.has_value(),
                                     image(k), c.has_value(), image(c), m.has_value(), image(m), y.has_value(),
                                     image(y), fifth.has_value(), image(fifth), sixth.has_value(), image(sixth),
                                     postproc_flags(input, output_bits), mem);
        })) {
      throw user_error("post-processing refuses its settings");
    }
    flags_ = flag_words(vrk_query_postproc_hint(handle_.get()), "10-bit steps");
  }
  ~postproc_stage() override { vrk_free_postproc(handle_.get()); }

  void run(const void* src, std::uint32_t pixels, void* dst) const override {
    vrk_xform_postproc(handle_.get(), src, pixels, dst);
  }

 private:
  stage_handle handle_;
};

}  // namespace

unsigned planes_made(const plane_curves& curves, unsigned planes) {
  return curves.main ? kit::planes_made(curves.main->image, planes) : planes;
}

std::unique_ptr<stage> make_postproc(const plane_curves& curves, line_format input, unsigned output_bits) {
  return std::make_unique<postproc_stage>(curves, input, output_bits);
}

}  // namespace vrk::tool
