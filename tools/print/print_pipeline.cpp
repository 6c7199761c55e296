#include "tools/print/print_setup.h"

#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

// Picture to inks.
void append_color(const print_options& options, const print_tables& tables, pipeline& road) {
  const unsigned bits = options.sample_bits();
  if (!tables.ink) return road.append(make_cmyk_to_kcmy(road.output()));

  const bool wants_rgb = tables.tone.any() || tables.rgb;
  if (wants_rgb && road.output().samples == 1) road.append(make_gray_to_rgb(road.output()));
  if (tables.tone.any() && road.output().bits == 16) road.append(make_narrow(road.output()));
  if (options.layout != pixel_layout::rgb && road.output().samples == 3) {
    road.append(make_layout(road.output(), options.layout));
  }
  if (tables.tone.any()) road.append(make_preproc(tables.tone, road.output(), bits));
  if (tables.rgb) road.append(make_csc1(*tables.rgb, road.output(), bits));
  if (tables.gray && road.output().samples == 3) road.append(make_csc1(*tables.gray, road.output(), bits));
  road.append(make_csc2(*tables.ink, road.output(), bits));
}

ed_precision precision_of(const print_options& options) {
  if (options.sample_bits() == 16) return ed_precision::samples16;
  return options.precision == 8U ? ed_precision::bits8 : ed_precision::bits10;
}

}  // namespace

pipeline make_pipeline(const print_options& options, const print_tables& tables, std::uint32_t width,
                       line_format source) {
  pipeline road(width, source);
  append_color(options, tables, road);
  const unsigned bits = options.sample_bits();
  if (tables.post.any() || road.output().bits != bits) road.append(make_postproc(tables.post, road.output(), bits));
  road.finish(tables.dither ? make_dither(*tables.dither, width, bits == 16)
                            : make_error_diffusion(*tables.spread, *tables.parameters, width, precision_of(options)));

  if (road.planes().size() != road.output().samples) {
    throw user_error((tables.dither ? *tables.dither : *tables.parameters).name + ": has levels for " +
                     std::to_string(road.planes().size()) + " planes, expected " +
                     std::to_string(road.output().samples));
  }
  return road;
}

}  // namespace vrk::tool
