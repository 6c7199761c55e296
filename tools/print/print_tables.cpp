#include "tools/print/print_tables.h"

#include "tools/print/contradictions.h"
#include "tools/print/own_tables.h"
#include "tools/print/preset_tables.h"

namespace vrk::tool {

print_tables choose_tables(const print_options& options, line_format source, const table& picture) {
  print_tables tables = read_own_tables(options, picture);
  refuse_contradictions(options, tables, source);
  if (options.inks.profile.to.empty()) tables.ink_limit = options.inks.profile.options.ink_limit;
  const unsigned inks = tables.ink_link       ? tables.ink_link->channels()
                        : source.samples == 4 ? 4
                                              : choose_ink_tables(options.inks, tables);
  const unsigned planes = choose_plane_curves(options.inks.split, inks, tables.post);
  choose_halftone_tables(options.dots, planes, options.precision() == ed_precision::samples16, tables);
  const profile_link& profile = options.inks.profile;
  if (!profile.to.empty() && options.pictures.drawn) tables.look = dot_colors(make_printed_dots(profile, planes));
  return tables;
}

}  // namespace vrk::tool
