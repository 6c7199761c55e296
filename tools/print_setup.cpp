#include "tools/print_setup.h"

#include <algorithm>

#include "kit/presets.h"
#include "tools/blob.h"
#include "tools/user_error.h"

namespace vrk::tool {
namespace {

bool starts_with(const table& t, std::string_view magic) {
  return t.image.size() >= magic.size() && std::equal(magic.begin(), magic.end(), t.image.begin());
}

kit::modulation modulation_named(const std::string& name) {
  // The full range: with less, planes near half coverage fall into checks whose phase against each other tints grays.
  return name == "noise" ? kit::fine_noise(127) : kit::no_modulation();
}

// Puts a table that a blob held where its magic says it belongs.
void place(table found, print_tables& tables) {
  if (starts_with(found, "csc1")) {
    tables.rgb = std::move(found);
  } else if (starts_with(found, "csc2") || starts_with(found, "1dlt")) {
    tables.ink = std::move(found);
  } else if (starts_with(found, "edpr")) {
    tables.parameters = std::move(found);
  } else if (starts_with(found, "edtb")) {
    tables.spread = std::move(found);
  } else {
    throw user_error(found.name + ": holds a table that this program does not print with");
  }
}

// None for a table that the second converter will refuse.
std::optional<unsigned> inks_made_by(const table& ink) {
  if (starts_with(ink, "1dlt")) return 1;
  if (starts_with(ink, "csc2") && ink.size() > 9 && (ink.image[9] == 4 || ink.image[9] == 6)) return ink.image[9];
  return {};
}

bool leaves_one_sample(const table& csc1) {
  return csc1.image.size() >= 8 && (std::equal(csc1.image.begin() + 4, csc1.image.begin() + 8, "gray") ||
                                    std::equal(csc1.image.begin() + 4, csc1.image.begin() + 8, "blck"));
}

}  // namespace

print_tables choose_tables(const print_options& options) {
  print_tables tables;
  if (!options.csc1.empty()) tables.rgb = read_table(options.csc1);
  if (!options.csc2.empty()) tables.ink = read_table(options.csc2);
  if (!options.edpr.empty()) tables.parameters = read_table(options.edpr);
  if (!options.edtb.empty()) tables.spread = read_table(options.edtb);
  for (const std::string& blob : options.blobs) place(read_from_blob(blob, options.inks.value_or(4)), tables);

  tables.inks = options.inks.value_or(4);
  if (!tables.ink.image.empty()) {
    const unsigned made = inks_made_by(tables.ink).value_or(tables.inks);
    if (options.inks && *options.inks != made) {
      throw user_error(tables.ink.name + ": makes " + std::to_string(made) + " inks, expected " +
                       std::to_string(*options.inks) + " by --inks");
    }
    tables.inks = made;
  } else if (tables.inks == 1) {
    tables.ink = {"the kit's tone curve", kit::black_ink_curve().encode()};
  } else {
    tables.ink = {"the kit's colour table", kit::ink_table(tables.inks).encode()};
  }
  if (tables.inks == 1 && !(tables.rgb && leaves_one_sample(*tables.rgb))) {
    tables.gray = table{"the kit's gray table", kit::subtype_table("gray")};
  }
  if (tables.parameters.image.empty()) {
    tables.parameters = {
        "the kit's levels",
        kit::ed_parameters(tables.inks, options.levels, modulation_named(options.modulation)).encode()};
  }
  if (tables.spread.image.empty()) tables.spread = {"the kit's filter", kit::ed_distribution(options.filter).encode()};
  return tables;
}

pipeline make_pipeline(const print_options& options, const print_tables& tables, std::uint32_t width,
                       line_format source) {
  const unsigned bits = options.precision == 16 ? 16 : 8;  // of samples on their way
  pipeline road(width, source);
  if (tables.rgb && source.samples == 1) road.append(make_gray_to_rgb(source));
  if (tables.rgb) road.append(make_csc1(*tables.rgb, road.output(), bits));
  if (tables.gray && road.output().samples == 3) road.append(make_csc1(*tables.gray, road.output(), bits));
  road.append(make_csc2(tables.ink, road.output(), bits));

  const ed_precision precision = options.precision == 16   ? ed_precision::samples16
                                 : options.precision == 10 ? ed_precision::bits10
                                                           : ed_precision::bits8;
  road.finish(make_error_diffusion(tables.spread, tables.parameters, width, precision));
  if (road.planes().size() != road.output().samples) {
    throw user_error(tables.parameters.name + ": has levels for " + std::to_string(road.planes().size()) +
                     " planes, expected " + std::to_string(road.output().samples));
  }
  return road;
}

}  // namespace vrk::tool
