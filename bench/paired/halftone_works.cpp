// The halftones, and the road from RGB to packed planes.
#include "bench/paired/own_rows.h"
#include "halftone/dither/dither_kernels.h"
#include "halftone/ed/ed_kernels.h"

namespace vrk::bench {
namespace {

// Output lines of any plane and line of cells, one behind the other in `bytes`.
struct output_lines {
  std::shared_ptr<kit::bytes> bytes;
  std::vector<std::uint8_t*> lines;

  explicit output_lines(const vrk_ht_info& info) {
    std::vector<std::size_t> starts;
    std::size_t size = 0;
    for (unsigned plane = 0; plane < info.plane_count; ++plane) {
      for (unsigned line = 0; line < info.plane_scale[plane].scale_y; ++line) {
        starts.push_back(size);
        size += info.line_bytes[plane];
      }
    }
    bytes = std::make_shared<kit::bytes>(size);
    for (const std::size_t start : starts) lines.push_back(bytes->data() + start);
  }
};

bool choose_ed(void* memory, rows choice) {
  ed_handle& h = record_of<ed_handle>(memory);
  if (choice == rows::defined) {
    if (ed_rows()[h.kernel].two_levels) return false;  // the handle holds no tables for the other
    h.kernel = defined_row(ed_rows(), h.kernel,
                           [](const ed_row& a, const ed_row& b) { return a.flags == b.flags && a.planes == b.planes; });
  }
  return choose_level(h, choice);
}

bool choose_dither(void* memory, rows choice) {
  dither_handle& h = record_of<dither_handle>(memory);
  if (choice == rows::defined) {
    for (dither_plane& plane : h.plane) {
      if (plane.level_count == 0) continue;
      // Rows differ in how they merge levels that do not fit; of those that do, the last one knows nothing.
      const auto alike = [](const dither_row& a, const dither_row& b) {
        return a.packing.bits == b.packing.bits && a.packing.code == b.packing.code;
      };
      plane.row = u8(defined_row(dither_rows(), plane.row, alike));
    }
  }
  return choose_level(h, choice);
}

// source: line of samples by number.
template <class Source>
std::optional<candidate> diffusion(const library& calls, rows choice, const kit::edpr_table& params,
                                   std::uint32_t flags, unsigned width, Source source) {
  const kit::bytes spread = kit::ed_distribution().encode(), parameters = params.encode();
  const auto create = [&](void* mem) {
    return calls.create_ed(width, std::uint32_t(spread.size()), spread.data(), std::uint32_t(parameters.size()),
                           parameters.data(), flags, mem);
  };
  const auto handle = std::make_shared<kit::bytes>(create(nullptr));
  create(handle->data());
  if (calls.linked ? !choose_ed(handle->data(), choice) : choice != rows::chosen) return {};
  vrk_ht_info info;
  calls.query_ed_info(handle->data(), &info);
  const output_lines out(info);
  calls.start_ed_block(handle->data(), width, 0, 0);
  return candidate{"", [=, exec = calls.exec_edx](unsigned y) { exec(handle->data(), source(y), out.lines.data()); },
                   out.bytes};
}

}  // namespace

work diffusion_work(const std::string& name, unsigned planes, std::uint32_t flags, const kit::edpr_table& params) {
  return {name, [=](const library& calls, rows choice, const input& in, unsigned width) {
            const unsigned bits = flags & VRK_IN16 ? 16 : 8;
            const auto lines =
                std::make_shared<source_lines>(plane_samples(in, planes, bits), planes * bits / 8, width);
            return diffusion(calls, choice, params, flags, width, [lines](unsigned y) { return (*lines)(y); });
          }};
}

work dither_work(const std::string& name, unsigned planes, std::uint32_t flags, const kit::dither_table& table) {
  const auto make = [=, image = table.encode()](const library& calls, rows choice, const input& in,
                                                unsigned width) -> std::optional<candidate> {
    const auto create = [&](void* mem) {
      return calls.create_dither(width, std::uint32_t(image.size()), image.data(), flags, mem);
    };
    const auto handle = std::make_shared<kit::bytes>(create(nullptr));
    create(handle->data());
    if (calls.linked ? !choose_dither(handle->data(), choice) : choice != rows::chosen) return {};
    vrk_ht_info info;
    calls.query_dither_info(handle->data(), &info);
    const output_lines out(info);
    const unsigned bits = flags & VRK_IN16 ? 16 : 8;
    const auto lines = std::make_shared<source_lines>(plane_samples(in, planes, bits), planes * bits / 8, width);
    calls.start_dither_block(handle->data(), width, 0, 0);
    return candidate{
        "", [=, exec = calls.exec_ditherx](unsigned y) { exec(handle->data(), (*lines)(y), out.lines.data()); },
        out.bytes};
  };
  return {name, make};
}

work page_work(const std::string& name) {
  const work converter = conversion_work(name, {.channels = 4});
  return {name, [=](const library& calls, rows choice, const input& in, unsigned width) -> std::optional<candidate> {
            const std::optional<candidate> inks = converter.candidate_for(calls, choice, in, width);
            if (!inks) return {};
            // A family without this level takes part as chosen.
            for (const rows own : {choice, choice == rows::defined ? choice : rows::chosen}) {
              const auto made = diffusion(calls, own, kit::ed_parameters(4, 2, kit::fine_noise_for(2)), VRK_PREC10,
                                          width, [inks](unsigned y) {
                                            inks->run(y);
                                            return inks->output->data();
                                          });
              if (made) return made;
            }
            return {};
          }};
}

}  // namespace vrk::bench
