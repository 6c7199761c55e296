#include "kit/explain.h"
#include "tools/pipeline/halftone.h"
#include "tools/pipeline/stage_handle.h"

namespace vrk::tool {
namespace {

std::uint32_t ed_flags(ed_precision precision) {
  switch (precision) {
    case ed_precision::bits8:
      return 0;
    case ed_precision::bits10:
      return VRK_PREC10;
    default:
      return VRK_IN16;
  }
}

// One block as wide as the page, from line 0 to the last.
class error_diffusion : public halftone {
 public:
  error_diffusion(stage_handle built, const table& parameters, std::uint32_t width)
      : halftone("error diffusion"), handle_(std::move(built)) {
    vrk_ht_info info;
    vrk_query_ed_info(handle_.get(), &info);
    std::uint8_t bits[6];
    vrk_query_ed_bitlen(handle_.get(), bits);
    flags_ = flag_words(vrk_query_ed_hint(handle_.get()), "10-bit precision");
    describe_planes(parameters, info, bits, kit::ed_level_values(parameters.image), 1023);
    vrk_clear_ed_buf(handle_.get());  // no error left over from another page
    vrk_start_ed_block(handle_.get(), width, 0, 0);
  }
  ~error_diffusion() override {
    vrk_end_ed_block(handle_.get());
    vrk_free_ed(handle_.get());
  }

 protected:
  stage_handle handle_;
};

class packed_lines final : public error_diffusion {
 public:
  using error_diffusion::error_diffusion;

  void run(const void* src, std::uint8_t* out) override {
    std::uint8_t* to[6] = {};
    for (std::size_t p = 0; p < planes_.size(); ++p) to[p] = out + planes_[p].offset;
    vrk_exec_ed(handle_.get(), src, to[0], to[1], to[2], to[3], to[4], to[5]);
  }
};

class dot_cells final : public error_diffusion {
 public:
  using error_diffusion::error_diffusion;

  void run(const void* src, std::uint8_t* out) override {
    lines_.clear();
    for (const plane_format& plane : planes_) {
      for (unsigned y = 0; y < plane.scale.y; ++y) lines_.push_back(out + plane.offset + y * plane.line_bytes);
    }
    vrk_exec_edx(handle_.get(), src, lines_.data());
  }

 private:
  std::vector<std::uint8_t*> lines_;
};

}  // namespace

std::unique_ptr<halftone> make_error_diffusion(const table& distribution, const table& parameters, std::uint32_t width,
                                               ed_precision precision) {
  stage_handle built;
  if (!built.build([&](void* mem) {
        return vrk_create_ed(width, distribution.size(), distribution.image.data(), parameters.size(),
                             parameters.image.data(), ed_flags(precision), mem);
      })) {
    if (const kit::refusal why = kit::why_refused_edpr(parameters.image)) refuse(parameters, why);
    refuse(distribution, kit::why_refused_edtb(distribution.image));
  }
  vrk_ht_info info;
  vrk_query_ed_info(built.get(), &info);
  if (info.dot_expansion != 0) return std::make_unique<dot_cells>(std::move(built), parameters, width);
  return std::make_unique<packed_lines>(std::move(built), parameters, width);
}

}  // namespace vrk::tool
