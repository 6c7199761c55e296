// Curves: post-processing, and what it takes to create a pre-processor.
#include "bench/paired/own_rows.h"
#include "kit/tone_curves.h"
#include "postproc/postproc_handle.h"

namespace vrk::bench {

work curves_work(const std::string& name, unsigned planes, std::uint32_t flags) {
  const auto make = [=](const library& calls, rows choice, const input& in,
                        unsigned width) -> std::optional<candidate> {
    kit::curve_image image{.version = "0020", .curve_count = planes, .output_count = planes};
    for (unsigned p = 0; p < planes; ++p) image.curves.push_back(kit::gamma_curve(1.2 + 0.2 * p));
    const kit::bytes table = image.encode();
    const auto create = [&](void* mem) {
      return calls.create_postproc(planes, 1, table.data(), 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr,
                                   0, nullptr, flags, mem);
    };
    const unsigned bits = flags & VRK_IN16 ? 16 : 8, out_bits = flags & VRK_OUT16 ? 16 : 8;
    const auto handle = std::make_shared<kit::bytes>(create(nullptr)),
               out = std::make_shared<kit::bytes>(std::size_t{width} * planes * out_bits / 8);
    create(handle->data());
    if (calls.linked ? !choose_level(record_of<postproc_handle>(handle->data()), choice) : choice != rows::chosen)
      return {};
    const auto lines = std::make_shared<source_lines>(plane_samples(in, planes, bits), planes * bits / 8, width);
    return candidate{
        "", [=, xform = calls.xform_postproc](unsigned y) { xform(handle->data(), (*lines)(y), width, out->data()); },
        out};
  };
  return {name, make};
}

namespace {

std::uint32_t create_preprocessor(const library& calls, std::uint32_t flags, void* mem) {
  const std::int16_t balance[] = {1, -1, 2};
  return calls.create_preproc(balance, 1, 1, 0, nullptr, 0, nullptr, flags, mem);
}

}  // namespace

work preprocessor_work(const std::string& name, std::uint32_t flags) {
  const auto make = [=](const library& calls, rows choice, const input& in,
                        unsigned width) -> std::optional<candidate> {
    if (choice != rows::chosen) return {};
    const auto handle = std::make_shared<kit::bytes>(create_preprocessor(calls, flags, nullptr)),
               out = std::make_shared<kit::bytes>(std::size_t{width} * 3 * (flags & VRK_OUT16 ? 2 : 1));
    create_preprocessor(calls, flags, handle->data());
    const auto lines = std::make_shared<source_lines>(in.rgb->rgb8, 3, width);
    return candidate{"",
                     [=, xform = calls.xform_preproc](unsigned y) {
                       xform(handle->data(), (*lines)(y), nullptr, width, out->data());
                     },
                     out};
  };
  return {name, make};
}

// A line is one creation, and the 256 grays through the new handle, which take a thousandth of the time: handles of
// other builds may look different.
work preprocessor_creation_work(const std::string& name) {
  const auto make = [](const library& calls, rows choice, const input&, unsigned) -> std::optional<candidate> {
    if (choice != rows::chosen) return {};
    const auto create = [calls](void* mem) { return create_preprocessor(calls, VRK_COMPOSE, mem); };
    kit::bytes grays;
    for (unsigned i = 0; i < 3 * 256; ++i) grays.push_back(std::uint8_t(i / 3));
    const auto handle = std::make_shared<kit::bytes>(create(nullptr)), out = std::make_shared<kit::bytes>(grays.size());
    return candidate{"",
                     [=, xform = calls.xform_preproc](unsigned) {
                       create(handle->data());
                       xform(handle->data(), grays.data(), nullptr, 256, out->data());
                     },
                     out};
  };
  return {name, make};
}

}  // namespace vrk::bench
