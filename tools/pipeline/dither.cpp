#include "kit/explain.h"
#include "tools/pipeline/halftone.h"
#include "tools/pipeline/stage_handle.h"

namespace vrk::tool {
namespace {

// One block as wide as the page, from line 0 to the last.
class dither final : public halftone {
 public:
  dither(const table& parameters, std::uint32_t width, bool samples16) : halftone("dither") {
    if (!handle_.build([&](void* mem) {
          return vrk_create_dither(width, parameters.size(), parameters.image.data(), samples16 ? VRK_IN16 : 0, mem);
        })) {
      refuse(parameters, kit::why_refused_dith(parameters.image));
    }
    vrk_ht_info info;
    vrk_query_dither_info(handle_.get(), &info);
    std::uint8_t bits[6];
    vrk_query_dither_bitlen(handle_.get(), bits);
    flags_ = flag_words(vrk_query_dither_hint(handle_.get()), "10-bit precision");
    describe_planes(parameters, info, bits, kit::dither_level_values(parameters.image, samples16),
                    samples16 ? 1023 : 255);
    vrk_start_dither_block(handle_.get(), width, 0, 0);
  }
  ~dither() override {
    vrk_end_dither_block(handle_.get());
    vrk_free_dither(handle_.get());
  }

  void run(const void* src, std::uint8_t* out) override {
    if (planes_.size() == 1) {
      vrk_exec_dither(handle_.get(), src, out, nullptr, nullptr, nullptr, nullptr, nullptr);
      return;
    }
    std::uint8_t* lines[6] = {};
    for (std::size_t p = 0; p < planes_.size(); ++p) lines[p] = out + planes_[p].offset;
    vrk_exec_ditherx(handle_.get(), src, lines);
  }

 private:
  stage_handle handle_;
};

}  // namespace

std::unique_ptr<halftone> make_dither(const table& parameters, std::uint32_t width, bool samples16) {
  return std::make_unique<dither>(parameters, width, samples16);
}

}  // namespace vrk::tool
