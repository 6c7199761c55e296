#include "tools/pipeline.h"

#include <algorithm>
#include <bit>

#include "kit/explain.h"
#include "tools/user_error.h"

namespace vrk::tool {
namespace {

constexpr std::string_view plane_names[] = {"k", "c", "m", "y", "lc", "lm"};

[[noreturn]] void refuse(const table& refused, const std::string& why) {
  throw user_error(refused.name + ": " + (why.empty() ? "is refused: what follows its header does not hold up" : why));
}

// Memory of one handle, by the protocol of every create function: asked for the size, then given the memory.
class handle {
 public:
  // `create` calls the create function with the memory that it is given; false when the stage refused its tables.
  template <class Create>
  bool build(const Create& create) {
    const std::uint32_t size = create(nullptr);
    if (size == 0) return false;
    memory_.resize((std::size_t{size} + 3) / 4);
    return create(memory_.data()) != 0;
  }
  void* get() { return memory_.data(); }

 private:
  std::vector<std::uint32_t> memory_;  // words, because a handle lies at a multiple of 4
};

std::uint32_t width_flags(line_format input, unsigned output_bits) {
  return (input.bits == 16 ? VRK_IN16 : 0) | (output_bits == 16 ? VRK_OUT16 : 0);
}

bool is_one_channel_subtype(const kit::bytes& image) {
  const std::string subtype(image.begin() + 4, image.begin() + 8);
  return subtype == "gray" || subtype == "blck";
}

class csc1_stage final : public stage {
 public:
  csc1_stage(const table& colors, line_format input, unsigned output_bits) : stage("csc1", {3, output_bits}) {
    const std::uint32_t flags = width_flags(input, output_bits);
    if (!handle_.build([&](void* mem) { return vrk_create_csc1(colors.size(), colors.image.data(), flags, mem); })) {
      refuse(colors, kit::why_refused_csc1(colors.image, flags != 0));
    }
    if (is_one_channel_subtype(colors.image)) output_.samples = 1;
  }
  ~csc1_stage() override { vrk_free_csc1(handle_.get()); }

  void run(const void* src, std::uint32_t pixels, void* dst) override {
    vrk_xform_csc1(handle_.get(), src, nullptr, pixels, dst);
  }

 private:
  handle handle_;
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
    if (colors.image.front() == 'c') output_.samples = colors.image[9];  // a grid's output channels; a curve has one
  }
  ~csc2_stage() override { vrk_free_csc2(handle_.get()); }

  void run(const void* src, std::uint32_t pixels, void* dst) override {
    vrk_xform_csc2(handle_.get(), src, pixels, dst);
  }

 private:
  handle handle_;
};

class gray_to_rgb final : public stage {
 public:
  explicit gray_to_rgb(line_format input) : stage("gray to rgb", {3, input.bits}) {}

  void run(const void* src, std::uint32_t pixels, void* dst) override {
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

// Both halftones run one block as wide as the page, from line 0 to the last, into a packed line per plane.
class packed_halftone : public halftone {
 protected:
  using halftone::halftone;

  // Planes as `info` tells them; their levels stand for `values`, of which `full` is all the ink.
  void add_planes(const table& parameters, const vrk_ht_info& info,
                  const std::array<std::vector<std::uint16_t>, 6>& values, double full) {
    for (std::size_t p = 0; p < info.plane_count; ++p) {
      const unsigned bits = info.plane_bits[p];
      if (!std::has_single_bit(bits) || bits > 8) {
        refuse(parameters, "has " + std::to_string(bits) + " bits per pixel, expected 1, 2, 4 or 8");
      }
      plane_line plane{plane_names[p], bits, unsigned(values[p].size()), {}, {}};
      for (const std::uint16_t value : values[p]) plane.ink.push_back(value / full);
      plane.packed.resize(info.line_bytes[p]);
      planes_.push_back(std::move(plane));
    }
    for (std::size_t p = 0; p < planes_.size(); ++p) out_[p] = planes_[p].packed.data();
  }

  handle handle_;
  std::array<std::uint8_t*, 6> out_{};
};

class error_diffusion final : public packed_halftone {
 public:
  error_diffusion(const table& spread, const table& parameters, std::uint32_t width, ed_precision precision)
      : packed_halftone("error diffusion") {
    if (!handle_.build([&](void* mem) {
          return vrk_create_ed(width, spread.size(), spread.image.data(), parameters.size(), parameters.image.data(),
                               ed_flags(precision), mem);
        })) {
      const std::string why = kit::why_refused_edpr(parameters.image);
      why.empty() ? refuse(spread, kit::why_refused_edtb(spread.image)) : refuse(parameters, why);
    }
    vrk_ht_info info;
    vrk_query_ed_info(handle_.get(), &info);
    if (info.dot_expansion != 0) refuse(parameters, "makes dot cells, expected packed lines (version \"0010\")");
    add_planes(parameters, info, kit::ed_level_values(parameters.image), 1023);
    vrk_start_ed_block(handle_.get(), width, 0, 0);
  }
  ~error_diffusion() override {
    vrk_end_ed_block(handle_.get());
    vrk_free_ed(handle_.get());
  }

  void run(const void* src) override {
    vrk_exec_ed(handle_.get(), src, out_[0], out_[1], out_[2], out_[3], out_[4], out_[5]);
  }
};

class ordered_dither final : public packed_halftone {
 public:
  ordered_dither(const table& parameters, std::uint32_t width, bool samples16) : packed_halftone("ordered dither") {
    if (!handle_.build([&](void* mem) {
          return vrk_create_dither(width, parameters.size(), parameters.image.data(), samples16 ? VRK_IN16 : 0, mem);
        })) {
      refuse(parameters, kit::why_refused_dith(parameters.image));
    }
    vrk_ht_info info;
    vrk_query_dither_info(handle_.get(), &info);
    add_planes(parameters, info, kit::dither_level_values(parameters.image, samples16), samples16 ? 1023 : 255);
    vrk_start_dither_block(handle_.get(), width, 0, 0);
  }
  ~ordered_dither() override {
    vrk_end_dither_block(handle_.get());
    vrk_free_dither(handle_.get());
  }

  void run(const void* src) override { vrk_exec_ditherx(handle_.get(), src, out_.data()); }
};

}  // namespace

std::unique_ptr<stage> make_csc1(const table& colors, line_format input, unsigned output_bits) {
  return std::make_unique<csc1_stage>(colors, input, output_bits);
}

std::unique_ptr<stage> make_gray_to_rgb(line_format input) { return std::make_unique<gray_to_rgb>(input); }

std::unique_ptr<stage> make_csc2(const table& colors, line_format input, unsigned output_bits) {
  return std::make_unique<csc2_stage>(colors, input, output_bits);
}

std::unique_ptr<halftone> make_error_diffusion(const table& spread, const table& parameters, std::uint32_t width,
                                               ed_precision precision) {
  return std::make_unique<error_diffusion>(spread, parameters, width, precision);
}

std::unique_ptr<halftone> make_dither(const table& parameters, std::uint32_t width, bool samples16) {
  return std::make_unique<ordered_dither>(parameters, width, samples16);
}

void pipeline::append(std::unique_ptr<stage> next) {
  const std::size_t bytes = next->output().pixel_bytes() * width_;
  stages_.push_back({std::move(next), std::vector<std::uint8_t>(bytes), {}});
}

void pipeline::run(const void* line) {
  for (step& s : stages_) {
    s.clock.time([&] { s.what->run(line, width_, s.out.data()); });
    line = s.out.data();
  }
  halftone_clock_.time([&] { halftone_->run(line); });
}

std::vector<stage_time> pipeline::times() const {
  std::vector<stage_time> all;
  for (const step& s : stages_) all.push_back({std::string(s.what->name()), s.clock.seconds()});
  all.push_back({std::string(halftone_->name()), halftone_clock_.seconds()});
  return all;
}

}  // namespace vrk::tool
