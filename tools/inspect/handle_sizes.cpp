#include "tools/inspect/handle_sizes.h"

#include <vrk.h>

#include <functional>
#include <span>
#include <stdexcept>

#include "kit/inspect.h"
#include "kit/presets.h"
#include "tools/pipeline/stage_handle.h"

namespace vrk::tool {
namespace {

using create_call = std::function<std::uint32_t(std::uint32_t width, void* mem)>;

struct precision {
  const char* name;
  std::uint32_t flags;
};
constexpr precision converter_precisions[] = {{"8 bits", 0}, {"12 bits", VRK_PREC12}};
constexpr precision curve_converter_precisions[] = {{"8 to 8 bits", 0},
                                                    {"8 to 16 bits", VRK_OUT16},
                                                    {"16 to 8 bits", VRK_IN16},
                                                    {"16 to 16 bits", VRK_IN16 | VRK_OUT16}};
constexpr precision preproc_precisions[] = {
    {"8 bits", 0}, {"10 bits", VRK_MID10}, {"combined", VRK_COMPOSE}, {"16 bits out", VRK_OUT16}};
constexpr precision postproc_precisions[] = {
    {"8 bits", 0}, {"10 bits", VRK_MID10}, {"combined", VRK_MID10 | VRK_COMPOSE}, {"16 bits", VRK_IN16 | VRK_OUT16}};
constexpr precision ed_precisions[] = {{"8 bits", 0}, {"10 bits", VRK_PREC10}, {"16-bit samples", VRK_IN16}};
constexpr precision dither_precisions[] = {{"8 bits", 0}, {"16-bit samples", VRK_IN16}};

// Builds the handles of one table, one after the other.
class sizes_of {
 public:
  explicit sizes_of(const table& image) : image_(image) {}

  const std::uint8_t* data() const { return image_.image.data(); }
  std::uint32_t size() const { return image_.size(); }

  // create: called with flags, line width and memory. why: the kit's judgement, asked first, because the library is not
  // told how long some images are.
  template <class Create, class Why>
  void add(const std::string& use, std::span<const precision> precisions, const Create& create, const Why& why) {
    for (const precision& p : precisions) {
      handle_size built{use, p.name, why(p.flags)};
      if (!built.refused) build([&](std::uint32_t width, void* mem) { return create(p.flags, width, mem); }, built);
      sizes_.push_back(std::move(built));
    }
  }

  std::vector<handle_size> take() { return std::move(sizes_); }

 private:
  void build(const create_call& create, handle_size& to) const {
    stage_handle handle;
    if (!handle.build([&](void* mem) { return create(1, mem); })) {
      throw std::logic_error(image_.name + ": the library refuses it for " + to.use + ", but the kit knows no reason");
    }
    const std::uint32_t of_one_pixel = create(1, nullptr);
    to.pixel_bytes = create(2, nullptr) - of_one_pixel;
    to.bytes = of_one_pixel - to.pixel_bytes;
  }

  const table& image_;
  std::vector<handle_size> sizes_;
};

void add_preproc(sizes_of& to, const kit::bytes& image) {
  for (const bool rgb : {false, true}) {
    const auto why = [&, count = rgb ? 3U : 1U](std::uint32_t) { return kit::why_refused_curves(image, count); };
    const std::string curves = rgb ? ", curves of R, G and B" : ", one curve";
    to.add(
        "pre-processing" + curves, preproc_precisions,
        [&](std::uint32_t flags, std::uint32_t, void* mem) {
          return vrk_create_preproc(nullptr, 0, 0, !rgb, to.data(), rgb, to.data(), flags, mem);
        },
        why);
    to.add(
        "second pre-processing" + curves, preproc_precisions,
        [&](std::uint32_t flags, std::uint32_t, void* mem) {
          return vrk_create_preproc2(nullptr, 0, !rgb, to.data(), rgb, to.data(), flags, mem);
        },
        why);
  }
}

std::uint32_t create_postproc(unsigned planes, const void* main, const void* k, std::uint32_t flags, void* mem) {
  return vrk_create_postproc(planes, main != nullptr, main, k != nullptr, k, 0, nullptr, 0, nullptr, 0, nullptr, 0,
                             nullptr, 0, nullptr, flags, mem);
}

void add_postproc(sizes_of& to, const kit::bytes& image) {
  for (const unsigned planes : {1U, 4U, 6U}) {
    to.add(
        "post-processing of " + std::to_string(planes) + (planes == 1 ? " plane" : " planes"), postproc_precisions,
        [&](std::uint32_t flags, std::uint32_t, void* mem) {
          return create_postproc(planes, to.data(), nullptr, flags, mem);
        },
        [&](std::uint32_t) { return kit::why_refused_main_curves(image, planes); });
  }
  to.add(
      "post-processing, curve of a plane", postproc_precisions,
      [&](std::uint32_t flags, std::uint32_t, void* mem) { return create_postproc(1, nullptr, to.data(), flags, mem); },
      [&](std::uint32_t) { return kit::why_refused_plane_curve(image); });
}

void add_curves(sizes_of& to, const kit::bytes& image) {
  add_preproc(to, image);
  to.add(
      "second converter, gray to one ink", curve_converter_precisions,
      [&](std::uint32_t flags, std::uint32_t, void* mem) {
        return vrk_create_csc2(to.size(), to.data(), 1, flags, mem);
      },
      [&](std::uint32_t) { return kit::why_refused_csc2(image, 1, false); });
  add_postproc(to, image);
}

void add_error_diffusion(sizes_of& to, const kit::bytes& image, bool is_parameters) {
  const kit::bytes other = is_parameters ? kit::ed_distribution().encode() : kit::ed_parameters(4, 2).encode();
  const auto size = std::uint32_t(other.size());
  to.add(
      is_parameters ? "error diffusion, with a distribution of 511 rows"
                    : "error diffusion of four planes with two levels",
      ed_precisions,
      [&](std::uint32_t flags, std::uint32_t width, void* mem) {
        return is_parameters ? vrk_create_ed(width, size, other.data(), to.size(), to.data(), flags, mem)
                             : vrk_create_ed(width, to.size(), to.data(), size, other.data(), flags, mem);
      },
      [&](std::uint32_t) { return is_parameters ? kit::why_refused_edpr(image) : kit::why_refused_edtb(image); });
}

}  // namespace

std::vector<handle_size> handle_sizes(const table& of) {
  sizes_of to(of);
  const kit::bytes& image = of.image;
  switch (kit::kind_of(image)) {
    case kit::table_kind::csc1:
      to.add(
          "first converter", converter_precisions,
          [&](std::uint32_t flags, std::uint32_t, void* mem) {
            return vrk_create_csc1(to.size(), to.data(), flags, mem);
          },
          [&](std::uint32_t flags) { return kit::why_refused_csc1(image, flags != 0); });
      break;
    case kit::table_kind::csc2:
      to.add(
          "second converter", converter_precisions,
          [&](std::uint32_t flags, std::uint32_t, void* mem) {
            return vrk_create_csc2(to.size(), to.data(), 3, flags, mem);
          },
          [&](std::uint32_t flags) { return kit::why_refused_csc2(image, 3, flags != 0); });
      break;
    case kit::table_kind::curves:
      add_curves(to, image);
      break;
    case kit::table_kind::edpr:
    case kit::table_kind::edtb:
      add_error_diffusion(to, image, kit::kind_of(image) == kit::table_kind::edpr);
      break;
    case kit::table_kind::dith:
      to.add(
          "ordered dither", dither_precisions,
          [&](std::uint32_t flags, std::uint32_t width, void* mem) {
            return vrk_create_dither(width, to.size(), to.data(), flags, mem);
          },
          [&](std::uint32_t) { return kit::why_refused_dith(image); });
      break;
    default:
      break;
  }
  return to.take();
}

}  // namespace vrk::tool
