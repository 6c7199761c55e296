#include "tools/print/contradictions.h"

namespace vrk::tool {

void refuse_contradictions(const print_options& options, const print_tables& own, line_format source) {
  const tone_options& tone = options.tone;
  const ink_options& inks = options.inks;
  const dot_options& dots = options.dots;
  const bool dither = dots.dithers(own.dither.has_value()), holds_inks = source.samples == 4;
  const struct {
    bool found;
    const char* sentence;
  } contradictions[] = {
      {!tone.balance2.empty() && (!tone.balance.empty() || tone.lift != 0),
       "--balance2 belongs to the second pre-processor, --balance and --lift to the first"},
      {inks.split && inks.count && *inks.count != 6, "--split makes six inks"},
      {inks.split && own.post.main, "--split brings a curve table for all planes: --post can only name single planes"},
      {dither && !dots.filter.empty(), "--filter belongs to error diffusion, not to the dither"},
      {dither && !dots.modulation.empty(), "--modulation belongs to error diffusion, not to the dither"},
      {dither && dots.cells, "--cells belong to error diffusion, not to the dither"},
      {dither && dots.precision && *dots.precision != 16, "--precision belongs to error diffusion, not to the dither"},
      {dither && (own.parameters || own.distribution),
       "\"edpr\" and \"edtb\" belong to error diffusion, not to the dither"},
      {!dither && !dots.matrix.empty(), "--matrix belongs to the dither, not to error diffusion"},
      {!dither && own.dither, "\"dith\" belongs to the dither, not to error diffusion"},
      {options.width16 && dots.precision && *dots.precision != 16,
       "--width16 diffuses 16-bit samples at their own precision: --precision can only be 16"},
      {own.distribution && !dots.filter.empty(), "--filter and the \"edtb\" table both say where the errors go"},
      {own.parameters && dots.levels, "--levels and the \"edpr\" table both give the levels"},
      {own.parameters && !dots.modulation.empty(), "--modulation and the \"edpr\" table both give the modulation"},
      {own.dither && dots.levels, "--levels and the \"dith\" table both give the levels"},
      {!dots.matrix.empty() && own.dither, "--matrix and the \"dith\" table both give the threshold matrix"},
      {dots.cells && own.parameters, "--cells and the \"edpr\" table both say how many dots a pixel has"},
      {holds_inks && !inks.profile.to.empty() && !own.ink_link,
       "--profile converts colours, and a picture in C, M, Y, K without a profile has amounts of ink: name its profile "
       "by --picture-profile"},
      {holds_inks && (own.tone.any() || own.rgb || own.ink),
       "a picture in C, M, Y, K needs no conversion: tone options and colour tables are for RGB and gray"},
      {holds_inks && !own.ink_link && inks.count && *inks.count != (inks.split ? 6U : 4U),
       "a picture in C, M, Y, K has four inks, or six with --split"},
      {own.ink_link && ((inks.split && own.ink_link->channels() != 4) ||
                        (inks.count && *inks.count != (inks.split ? 6U : own.ink_link->channels()))),
       "--inks and --split ask for other inks than the printer's profile has"},
  };
  for (const auto& c : contradictions) {
    if (c.found) throw usage_error(c.sentence);
  }
}

}  // namespace vrk::tool
