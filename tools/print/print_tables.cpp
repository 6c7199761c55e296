#include "tools/print/print_tables.h"

#include "tools/print/contradictions.h"
#include "tools/print/own_tables.h"
#include "tools/print/preset_tables.h"

namespace vrk::tool {
namespace {

// The profile is one of the printer with its curves: what it says of inks holds for the dots that become of them.
dot_colors look_of(const profile_link& profile, const plane_curves& post, unsigned inks, unsigned planes) {
  if (!post.any()) return dot_colors(make_printed_dots(profile, planes, {}));
  const auto curves = make_postproc(post, {inks, 16}, 16);
  return dot_colors(make_printed_dots(profile, planes, [&](const profiles::samples& pixels) {
    profiles::samples dots(pixels.size() / inks * planes);
    curves->run(pixels.data(), std::uint32_t(pixels.size() / inks), dots.data());
    return dots;
  }));
}

}  // namespace

std::vector<std::pair<std::string, const table*>> named_tables(const print_tables& tables) {
  std::vector<std::pair<std::string, const table*>> named;
  const auto add = [&](const std::string& role, const std::optional<table>& of) {
    if (of) named.emplace_back(role, &*of);
  };
  add("curve", tables.tone.curve);
  add("rgb curves", tables.tone.rgb_curves);
  add("csc1", tables.rgb);
  add("gray", tables.gray);
  add("csc2", tables.ink);
  add("post", tables.post.main);
  for (std::size_t p = 0; p < plane_names.size(); ++p) {
    add("post " + std::string(plane_names[p]), tables.post.planes[p]);
  }
  add("dith", tables.dither);
  add("edpr", tables.parameters);
  add("edtb", tables.distribution);
  return named;
}

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
  if (!profile.to.empty() && options.pictures.drawn) tables.look = look_of(profile, tables.post, inks, planes);
  return tables;
}

}  // namespace vrk::tool
