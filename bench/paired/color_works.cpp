// The converters.
#include "bench/paired/own_rows.h"
#include "csc/csc1_kernels.h"
#include "csc/csc2_kernels.h"
#include "kit/color_grids.h"

namespace vrk::bench {
namespace {

// Three channels: RGB with more saturation; four or six: the kit's inks.
kit::bytes table_of(const conversion& job) {
  kit::color_table table;
  table.grid = job.channels == 3 ? kit::matrix_grid(kit::saturation_matrix(1.2), job.points)
                                 : kit::ink_grid(job.channels, job.points);
  if (!job.bounded) {  // the levels above half lie far beyond the last position of an axis
    table.axes.fill(kit::even_axis(job.points));
    for (std::uint16_t& position : table.axes[0]) position = std::uint16_t(position / 2);
  }
  return table.encode();
}

// The picture as pixels that the handle takes.
kit::bytes pixels_of(const conversion& job, const input& in) {
  const unsigned samples = job.gray ? 1 : job.layout < 2 ? 3 : 4, bytes = job.flags & VRK_IN16 ? 2 : 1;
  const auto* const rgb =
      bytes == 1 ? in.rgb->rgb8.data() : reinterpret_cast<const std::uint8_t*>(in.rgb->rgb16.data());
  kit::bytes pixels;
  pixels.reserve(std::size_t{in.rgb->pixels()} * samples * bytes);
  for (std::size_t i = 0; i < in.rgb->pixels();
       ++i) {  // for every layout the colours in some order: they are a picture
    for (unsigned s = 0; s < samples * bytes; ++s) pixels.push_back(rgb[i * 3 * bytes + s % (3 * bytes)]);
  }
  return pixels;
}

template <class Handle, class Row>
bool choose_rows(void* memory, rows choice, std::span<const Row> all, auto alike) {
  Handle& h = record_of<Handle>(memory);
  if (choice == rows::defined) h.row = h.short_run_row = defined_row(all, h.row, alike);
  return choose_level(h, choice);
}

bool choose(void* memory, bool first, rows choice) {
  if (first) {
    return choose_rows<csc1_handle>(memory, choice, csc1_rows(), [](const csc1_row& a, const csc1_row& b) {
      return a.rule == b.rule && a.widths == b.widths;
    });
  }
  return choose_rows<csc2_handle>(memory, choice, csc2_rows(), [](const csc2_row& a, const csc2_row& b) {
    return a.inks == b.inks && a.gray == b.gray && a.widths == b.widths;
  });
}

}  // namespace

work conversion_work(const std::string& name, const conversion& job) {
  const auto make = [job, table = table_of(job)](const library& calls, rows choice, const input& in,
                                                 unsigned width) -> std::optional<candidate> {
    const bool first = job.channels == 3;
    const auto create = [&](void* mem) {
      const auto size = std::uint32_t(table.size());
      return first ? calls.create_csc1(size, table.data(), job.flags, mem)
                   : calls.create_csc2(size, table.data(), job.gray ? 1 : 3, job.flags, mem);
    };
    const auto handle = std::make_shared<kit::bytes>(create(nullptr));
    create(handle->data());
    (first ? calls.set_csc1_rgb : calls.set_csc2_rgb)(handle->data(), job.layout);
    if (calls.linked ? !choose(handle->data(), first, choice) : choice != rows::chosen) return {};

    const kit::bytes pixels = pixels_of(job, in);
    const auto lines = std::make_shared<source_lines>(pixels, pixels.size() / in.rgb->pixels(), width);
    const unsigned samples = first && job.layout >= 2 ? 4 : job.channels;
    const auto out = std::make_shared<kit::bytes>(std::size_t{width} * samples * (job.flags & VRK_OUT16 ? 2 : 1));
    if (!first) {
      return candidate{
          "", [=, xform = calls.xform_csc2](unsigned y) { xform(handle->data(), (*lines)(y), width, out->data()); },
          out};
    }
    const auto mask = std::make_shared<kit::bytes>(width / 8 + 1, std::uint8_t{0x0F});
    const std::uint8_t* const masked = job.masked ? mask->data() : nullptr;
    return candidate{"",
                     [=, xform = calls.xform_csc1](unsigned y) {
                       static_cast<void>(mask);  // lives as long as the work
                       xform(handle->data(), (*lines)(y), masked, width, out->data());
                     },
                     out};
  };
  return {name, make};
}

}  // namespace vrk::bench
