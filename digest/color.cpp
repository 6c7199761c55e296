// Frame, pre-processing, both converters, post-processing.
#include <array>

#include "csc/csc1_handle.h"
#include "csc/csc2_handle.h"
#include "digest/digest_entry.h"
#include "kit/color_table.h"
#include "kit/curve_image.h"
#include "postproc/postproc_handle.h"

namespace vrk::digest {

namespace {

constexpr std::uint32_t sample_flags[] = {0, VRK_PREC12, VRK_IN16, VRK_OUT16, VRK_IN16 | VRK_OUT16};

std::uint32_t sample_bytes(std::uint32_t flags, std::uint32_t bit) { return (flags & bit) != 0 ? 2 : 1; }

kit::curve_image curves(std::size_t count) {
  kit::curve_image image;
  for (std::size_t i = 0; i < count; ++i) {
    const kit::bytes grain = noise(1024, i + 7);
    kit::curve& c = image.curves.emplace_back();
    for (std::size_t j = 0; j < c.size(); ++j) c[j] = std::uint16_t(64 * (i % 2 == 0 ? j : 1023 - j) + grain[j] % 64);
  }
  return image;
}

// Six planes of four.
kit::curve_image split_curves() {
  kit::curve_image image = curves(6);
  image.version = "0020";
  image.curve_count = 4;
  image.output_count = 6;
  return image;
}

void reorderings() {
  for (const bool words : {false, true}) {
    digest_entry entry(words ? "cmyk_to_kcmy_16" : "cmyk_to_kcmy_8");
    if (!entry.wanted()) continue;
    const pixel_bytes src = picture(chosen.width, words ? 8 : 4);
    std::uint8_t* const pixels = entry.output(src.size());
    std::copy(src.begin(), src.end(), pixels);
    entry.run(3, [&](std::uint32_t) {
      words ? vrk_cmyk_to_kcmy_16(chosen.width, pixels) : vrk_cmyk_to_kcmy_8(chosen.width, pixels);
    });
  }
}

// Layout and mask of line y: all layouts without a mask, then all with one.
struct layout_and_mask {
  std::uint32_t layout;
  const std::uint8_t* mask;

  layout_and_mask(std::uint32_t y, const kit::bytes& bits) : layout(y % 4), mask(y < 4 ? nullptr : bits.data()) {}
};

void pre_processors() {
  const kit::bytes one = curves(1).encode(), three = curves(3).encode(), bits = noise(chosen.width / 8 + 1);
  const pixel_bytes src = picture(chosen.width, 4);
  const std::array<std::int16_t, 3> balance{3, -2, 4};
  for (const bool second : {false, true}) {
    for (std::uint32_t stages = 0; stages < 32; ++stages) {
      const auto on = [stages](std::uint32_t bit) { return stages >> bit & 1; };
      if (second && on(1)) continue;  // has no lift
      for (const std::uint32_t flags : {0u, VRK_OUT16, VRK_MID10, VRK_COMPOSE, VRK_COMPOSE | VRK_OUT16}) {
        std::string name = second ? "preproc2" : "preproc";
        for (const std::uint32_t bit : {0, 1, 2, 3, 4}) {
          if (on(bit)) name += std::array{" balance", " lift", " contrast", " curve", " rgb_curves"}[bit];
        }
        digest_entry entry(with_flags(name, flags));
        if (!entry.wanted()) continue;
        void* const h = entry.build([&](void* mem) {
          const std::int16_t* const steps = on(0) ? balance.data() : nullptr;
          return second ? vrk_create_preproc2(steps, on(2) * 3, on(3), one.data(), on(4), three.data(), flags, mem)
                        : vrk_create_preproc(steps, on(1) * 2, on(2) * 3, on(3), one.data(), on(4), three.data(), flags,
                                             mem);
        });
        std::uint8_t* const dst = entry.output(std::size_t(chosen.width) * 8);
        entry.run(8, [&](std::uint32_t y) {
          const layout_and_mask with(y, bits);
          (second ? vrk_set_preproc2_rgb : vrk_set_preproc_rgb)(h, with.layout);
          (second ? vrk_xform_preproc2 : vrk_xform_preproc)(h, src.data(), with.mask, chosen.width, dst);
        });
      }
    }
  }
}

// Grid points crowd together at the dark end. end: the axes' last position; levels beyond are extrapolated.
kit::bytes grid_table(unsigned channels, unsigned points, kit::grid_encoding encoding, unsigned end = 255) {
  kit::color_table table{.encoding = encoding};
  table.grid = {.points = points, .channels = channels};
  const kit::bytes samples = noise(std::size_t(points) * points * points * channels * 2, points + channels);
  for (std::size_t i = 0; i < samples.size(); i += 2) {
    table.grid.samples.push_back(std::uint16_t(samples[i] << 8 | samples[i + 1]));
  }
  for (kit::axis_positions& axis : table.axes) {
    for (unsigned i = 0; i < points; ++i) {
      axis.push_back(std::uint16_t(i * (i + points) * end / ((points - 1) * (2 * points - 1)) * 257));
    }
  }
  return table.encode();
}

void first_converter(const std::string& name, const kit::bytes& table, std::uint32_t flags) {
  digest_entry entry(with_flags("csc1 " + name, flags));
  if (!entry.wanted()) return;
  const pixel_bytes src = picture(chosen.width, 4 * sample_bytes(flags, VRK_IN16));
  const kit::bytes bits = noise(chosen.width / 8 + 1);
  void* const h = entry.build<csc1_handle>(
      [&](void* mem) { return vrk_create_csc1(std::uint32_t(table.size()), table.data(), flags, mem); });
  std::uint8_t* const dst = entry.output(std::size_t(chosen.width) * 8);
  std::uint8_t* const short_dst = entry.output(short_width * 8);
  entry.run(8, [&](std::uint32_t y) {
    const layout_and_mask with(y, bits);
    vrk_set_csc1_rgb(h, with.layout);
    vrk_xform_csc1(h, src.data(), with.mask, chosen.width, dst);
    if (!chosen.speed) vrk_xform_csc1(h, src.data(), with.mask, short_width, short_dst);
  });
}

void second_converter(const std::string& name, const kit::bytes& table, std::uint32_t input_samples,
                      std::uint32_t flags) {
  digest_entry entry(with_flags("csc2 " + name, flags));
  if (!entry.wanted()) return;
  const pixel_bytes src = picture(chosen.width, (input_samples == 1 ? 1 : 4) * sample_bytes(flags, VRK_IN16));
  void* const h = entry.build<csc2_handle>(
      [&](void* mem) { return vrk_create_csc2(std::uint32_t(table.size()), table.data(), input_samples, flags, mem); });
  std::uint8_t* const dst = entry.output(std::size_t(chosen.width) * 12);
  std::uint8_t* const short_dst = entry.output(short_width * 12);
  entry.run(4, [&](std::uint32_t y) {
    vrk_set_csc2_rgb(h, y);
    vrk_xform_csc2(h, src.data(), chosen.width, dst);
    if (!chosen.speed) vrk_xform_csc2(h, src.data(), short_width, short_dst);
  });
}

void converters() {
  using enum kit::grid_encoding;
  constexpr std::array encoding_names{"raw16", "packed12", "packed10", "raw8", "", "", "delta10", "delta8"};
  const auto grid_name = [&](unsigned points, unsigned channels, kit::grid_encoding encoding) {
    return std::to_string(points) + "^3x" + std::to_string(channels) + " " + encoding_names[std::size_t(encoding)];
  };
  for (const std::uint32_t flags : sample_flags) {
    for (const char* subtype : {"thrh", "gray", "blck", "sold"}) {
      first_converter(subtype, kit::subtype_table(subtype), flags);
      first_converter(subtype, kit::subtype_table(subtype), flags | VRK_INVERT);
    }
    for (const unsigned points : {2, 17, 30}) {
      for (const auto encoding : {raw16, packed12, packed10, raw8, delta8}) {
        first_converter(grid_name(points, 3, encoding), grid_table(3, points, encoding), flags);
      }
      for (const unsigned inks : {4, 6}) {
        for (const auto encoding : {raw16, packed12, packed10, raw8, delta10}) {
          const kit::bytes table = grid_table(inks, points, encoding);
          second_converter(grid_name(points, inks, encoding), table, 3, flags);
          second_converter(grid_name(points, inks, encoding) + " gray", table, 1, flags);
        }
      }
    }
    first_converter("17^3x3 short axes", grid_table(3, 17, raw16, 240), flags);
    for (const unsigned inks : {4, 6}) {
      const std::string name = "17^3x" + std::to_string(inks) + " short axes";
      second_converter(name, grid_table(inks, 17, raw16, 240), 3, flags);
      second_converter(name + " gray", grid_table(inks, 17, raw16, 240), 1, flags);
    }
    second_converter("curve", curves(1).encode(), 1, flags);
  }
}

void post_processing() {
  const kit::bytes one = curves(1).encode();
  constexpr std::uint32_t sample_and_table_flags = VRK_IN16 | VRK_OUT16 | VRK_MID10 | VRK_COMPOSE;
  for (std::uint32_t flags = 0; flags <= sample_and_table_flags; ++flags) {
    if ((flags & ~sample_and_table_flags) != 0) continue;
    for (const unsigned planes : {1, 4, 6}) {
      for (const bool split : {false, true}) {
        if (split && planes != 4) continue;
        const kit::bytes main = (split ? split_curves() : curves(planes)).encode();
        for (const std::uint32_t tables : {0u, 1u, 2u, 3u}) {  // 1: main table, 2: plane tables
          if (split && (tables & 1) == 0) continue;
          std::string name = "postproc " + std::to_string(planes) + (split ? " to 6" : "");
          if ((tables & 1) != 0) name += " main";
          if ((tables & 2) != 0) name += " planes";
          digest_entry entry(with_flags(name, flags));
          if (!entry.wanted()) continue;
          const std::uint32_t on = tables >> 1;
          const void* const c = one.data();
          void* const h = entry.build<postproc_handle>([&](void* mem) {
            return vrk_create_postproc(planes, tables & 1, main.data(), on, c, on, c, 0, nullptr, on, c, on, c, 0,
                                       nullptr, flags, mem);
          });
          const pixel_bytes src = picture(chosen.width, planes * sample_bytes(flags, VRK_IN16));
          std::uint8_t* const dst = entry.output(std::size_t(chosen.width) * 12);
          entry.run(1, [&](std::uint32_t) { vrk_xform_postproc(h, src.data(), chosen.width, dst); });
        }
      }
    }
  }
}

}  // namespace

void color_entries() {
  reorderings();
  pre_processors();
  converters();
  post_processing();
}

}  // namespace vrk::digest
