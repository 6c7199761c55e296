#include "tools/print/print_pipeline.h"

#include "kit/separation.h"

namespace vrk::tool {
namespace {

// Picture to inks.
void append_color(const print_tables& tables, pixel_layout layout, unsigned bits, pipeline& to) {
  if (tables.ink_link) return to.append(make_ink_link(to.output(), tables.ink_link, bits));
  if (!tables.ink) {
    to.append(make_cmyk_to_kcmy(to.output()));
    if (tables.ink_limit) to.append(make_ink_limit(to.output(), *tables.ink_limit, 400));
    return;
  }

  const bool wants_rgb = tables.tone.any() || tables.rgb;
  if (wants_rgb && to.output().samples == 1) to.append(make_gray_to_rgb(to.output()));
  if (tables.tone.any() && to.output().bits == 16) to.append(make_narrow(to.output()));
  if (layout != pixel_layout::rgb && to.output().samples == 3) to.append(make_layout(to.output(), layout));
  if (tables.tone.any()) to.append(make_preproc(tables.tone, to.output(), bits));
  if (tables.rgb) to.append(make_csc1(*tables.rgb, to.output(), bits));
  if (tables.gray && to.output().samples == 3) to.append(make_csc1(*tables.gray, to.output(), bits));
  to.append(make_csc2(*tables.ink, to.output(), bits));
  constexpr double largest = 110 * kit::ink_limit;  // of the kit's tables; light inks add a tenth
  if (tables.ink_limit) to.append(make_ink_limit(to.output(), *tables.ink_limit, largest));
}

}  // namespace

pipeline make_print_pipeline(const print_tables& tables, pixel_layout layout, ed_precision precision,
                             std::uint32_t width, line_format source) {
  const unsigned bits = precision == ed_precision::samples16 ? 16 : 8;
  pipeline stages(width, source);
  append_color(tables, layout, bits, stages);
  if (tables.post.any() || stages.output().bits != bits) {
    stages.append(make_postproc(tables.post, stages.output(), bits));
  }
  finish_with_halftone(tables, precision, stages);
  return stages;
}

void finish_with_halftone(const print_tables& tables, ed_precision precision, pipeline& to) {
  const bool samples16 = precision == ed_precision::samples16;
  to.finish(tables.dither ? make_dither(*tables.dither, to.width(), samples16)
                          : make_error_diffusion(*tables.distribution, *tables.parameters, to.width(), precision));
  const std::size_t inks = to.output().samples, planes = to.planes().size();
  if (planes != inks) {
    refuse(tables.dither ? *tables.dither : *tables.parameters,
           "has levels for " + std::to_string(planes) + " planes, expected " + std::to_string(inks));
  }
}

}  // namespace vrk::tool
