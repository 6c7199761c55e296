// The converters: every kernel on both pictures, the create calls of every encoding, Little CMS on the same grids.
#include <vector>

#include "bench/common.h"
#include "bench/lcms.h"
#include "kit/color_grids.h"
#include "vrk.h"

namespace vrk::bench {
namespace {

using buffer = std::vector<std::uint8_t>;

// Three channels: RGB with more saturation; four or six: inks.
const kit::color_grid& grid_of(unsigned channels) {
  static const kit::color_grid rgb = kit::matrix_grid(kit::saturation_matrix(1.2));
  static const kit::color_grid four = kit::ink_grid(4), six = kit::ink_grid(6);
  return channels == 3 ? rgb : channels == 4 ? four : six;
}

kit::bytes table_of(unsigned channels, kit::grid_encoding encoding) {
  kit::color_table table;
  table.encoding = encoding;
  table.grid = grid_of(channels);
  return table.encode();
}

// A handle of the converter for this number of channels; `samples` of an input pixel.
class converter {
 public:
  converter(unsigned channels, unsigned samples, std::uint32_t flags)
      : first_(channels == 3), table_(table_of(channels, kit::grid_encoding::raw16)), samples_(samples), flags_(flags) {
    memory_.resize(create(nullptr));
    create(memory_.data());
  }

  std::uint32_t create(void* mem) const {
    const auto size = std::uint32_t(table_.size());
    return first_ ? vrk_create_csc1(size, table_.data(), flags_, mem)
                  : vrk_create_csc2(size, table_.data(), samples_, flags_, mem);
  }

  void run(const void* src, unsigned pixel_count, void* dst) {
    if (first_) {
      vrk_xform_csc1(memory_.data(), src, nullptr, pixel_count, dst);
    } else {
      vrk_xform_csc2(memory_.data(), src, pixel_count, dst);
    }
  }

 private:
  bool first_;
  kit::bytes table_;
  unsigned samples_;
  std::uint32_t flags_;
  buffer memory_;
};

// The whole picture, line by line into one output line.
template <class Run>
void convert_picture(benchmark::State& state, const picture& p, unsigned in_bits, unsigned in_samples,
                     unsigned out_pixel_bytes, Run run) {
  buffer out(std::size_t(p.width) * out_pixel_bytes);
  const std::size_t line_bytes = std::size_t(p.width) * in_samples * in_bits / 8;
  const std::uint8_t* const pixels =
      in_bits == 8 ? p.rgb8.data() : reinterpret_cast<const std::uint8_t*>(p.rgb16.data());
  for (auto _ : state) {
    for (unsigned y = 0; y < p.height; ++y) run(pixels + y * line_bytes, p.width, out.data());
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  count_pixels(state, p.pixels());
}

struct variant {
  const char* name;
  unsigned in_bits, out_bits;
  std::uint32_t flags;
};
constexpr variant variants[] = {{"8-8-8", 8, 8, 0},
                                {"8-12-8", 8, 8, VRK_PREC12},
                                {"8-12-16", 8, 16, VRK_OUT16},
                                {"16-12-16", 16, 16, VRK_IN16 | VRK_OUT16},
                                {"16-12-8", 16, 8, VRK_IN16}};

void add_kernel(const std::string& name, const picture& p, unsigned channels, unsigned in_samples, const variant& v) {
  benchmark::RegisterBenchmark(name.c_str(), [=, &p](benchmark::State& state) {
    converter c(channels, in_samples, v.flags);
    convert_picture(state, p, v.in_bits, in_samples, channels * v.out_bits / 8,
                    [&c](const void* src, unsigned n, void* dst) { c.run(src, n, dst); });
  });
}

// Ratios to reach: 2 (six channels: 1.8) to the peer's 8-bit path, 1.5 to its 16-bit path.
void add_peer(const std::string& name, const picture& p, unsigned channels, unsigned bits) {
#ifdef VRK_BENCH_LCMS2
  benchmark::RegisterBenchmark(name.c_str(), [=, &p](benchmark::State& state) {
    const lcms_link link(grid_of(channels), bits);
    convert_picture(state, p, bits, 3, channels * bits / 8,
                    [&link](const void* src, unsigned n, void* dst) { link.run(src, n, dst); });
  });
#endif
}

void add_create(unsigned channels, kit::grid_encoding encoding, const char* encoding_name) {
  std::string name = "create/";
  name += std::to_string(channels) + "ch/" + encoding_name;
  benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
    const kit::bytes table = table_of(channels, encoding);
    const auto create = [&table, channels](void* mem) {
      return channels == 3 ? vrk_create_csc1(std::uint32_t(table.size()), table.data(), VRK_PREC12, mem)
                           : vrk_create_csc2(std::uint32_t(table.size()), table.data(), 3, VRK_PREC12, mem);
    };
    buffer memory(create(nullptr));
    for (auto _ : state) benchmark::DoNotOptimize(create(memory.data()));
  })->Unit(benchmark::kMicrosecond);
}

const bool registered = [] {
  for (const picture* const picture_of : {&photographic(), &uniform_random()}) {
    const picture& p = *picture_of;
    for (const unsigned channels : {3u, 4u, 6u}) {
      const std::string stage = channels == 3 ? "csc1/" : "csc2/";
      const std::string end = std::string("/").append(std::to_string(channels)).append("ch/").append(p.name);
      add_peer("lcms/8" + end, p, channels, 8);
      add_peer("lcms/16" + end, p, channels, 16);
      for (const variant& v : variants) {
        const bool narrow = v.flags == 0;
        const std::string name = stage + v.name + end;
        add_kernel(name, p, channels, 3, v);
        compare(name, (narrow ? "lcms/8" : "lcms/16") + end, !narrow ? 1.5 : channels == 6 ? 1.8 : 2);
        if (channels != 3) add_kernel(stage + v.name + "/gray" + end, p, channels, 1, v);
      }
    }
  }
  using enum kit::grid_encoding;
  for (const unsigned channels : {3u, 4u, 6u}) {
    add_create(channels, raw16, "raw16");
    add_create(channels, packed12, "packed12");
    add_create(channels, packed10, "packed10");
    add_create(channels, raw8, "raw8");
    add_create(channels, channels == 3 ? delta8 : delta10, "delta");
  }
  return true;
}();

}  // namespace
}  // namespace vrk::bench
