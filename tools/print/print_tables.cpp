#include "tools/print/print_tables.h"

#include <algorithm>

#include "kit/presets.h"
#include "kit/tone_curves.h"
#include "tools/pipeline/user_error.h"
#include "tools/print/blob_argument.h"
#include "tools/print/curve_argument.h"

namespace vrk::tool {
namespace {

bool starts_with(const table& t, std::string_view magic) {
  return t.image.size() >= magic.size() && std::equal(magic.begin(), magic.end(), t.image.begin());
}

// A byte of an image that has not been looked at yet.
unsigned byte(const table& t, std::size_t at) { return at < t.image.size() ? t.image[at] : 0; }

// The one curve of an image, for images that are made of several.
kit::curve only_curve(const table& t) {
  constexpr std::size_t header = 12;
  kit::curve curve{};
  if (byte(t, 8) != 1 || t.image.size() < header + 2 * curve.size()) {
    throw user_error(t.name + ": is no image of one curve");
  }
  for (std::size_t i = 0; i < curve.size(); ++i) {
    curve[i] = std::uint16_t(t.image[header + 2 * i] << 8 | t.image[header + 2 * i + 1]);
  }
  return curve;
}

// Fills a place that only one table can take.
void put(std::optional<table>& place, table found) {
  if (place) throw user_error(found.name + ": takes the place of " + place->name + ", give one of them");
  place = std::move(found);
}

// A blob's type says where its tables belong, and the table's magic where that leaves a choice.
void put_from_blob(blob_table from, print_tables& tables) {
  table& found = from.found;
  if (from.type == "INGM") return put(byte(found, 8) == 3 ? tables.tone.rgb_curves : tables.tone.curve, found);
  if (from.type == "OTGM") return put(tables.post.main, found);
  std::optional<table>* const place = starts_with(found, "csc1")                                 ? &tables.rgb
                                      : starts_with(found, "csc2") || starts_with(found, "1dlt") ? &tables.ink
                                      : starts_with(found, "edpr")                               ? &tables.parameters
                                      : starts_with(found, "edtb")                               ? &tables.spread
                                      : starts_with(found, "dith")                               ? &tables.dither
                                                                                                 : nullptr;
  if (place == nullptr) throw user_error(found.name + ": holds a table that this program does not print with");
  put(*place, found);
}

print_tables read_own_tables(const print_options& options) {
  print_tables tables;
  const auto read = [](std::optional<table>& place, const std::string& path) {
    if (!path.empty()) place = read_table(path);
  };
  read(tables.rgb, options.csc1);
  read(tables.ink, options.csc2);
  read(tables.parameters, options.edpr);
  read(tables.spread, options.edtb);
  read(tables.dither, options.dith);
  const unsigned inks = options.split ? 6 : options.inks.value_or(4);
  for (const std::string& blob : options.blobs) put_from_blob(read_from_blob(blob, inks), tables);
  return tables;
}

void choose_tone(const print_options& options, tone_settings& tone) {
  if (!options.balance.empty()) tone.balance = {options.balance[0], options.balance[1], options.balance[2]};
  if (!options.balance2.empty()) tone.balance2 = {options.balance2[0], options.balance2[1]};
  tone.lift = options.lift;
  tone.contrast = options.contrast;

  std::vector<kit::curve> channels;
  for (const std::string& argument : options.curves) {
    constexpr std::string_view names[] = {"r", "g", "b"};
    named_curve curve = read_curve(argument, names);
    if (curve.of) {
      if (channels.empty()) channels.assign(3, kit::identity_curve());
      channels[*curve.of] = only_curve(curve.image);
    } else {
      put(byte(curve.image, 8) == 3 ? tone.rgb_curves : tone.curve, std::move(curve.image));
    }
  }
  if (channels.empty()) return;
  put(tone.rgb_curves, {"the curves of R, G and B", kit::curve_image{.curves = channels}.encode()});
}

// None for a table that the second converter will refuse.
std::optional<unsigned> inks_made_by(const table& ink) {
  if (starts_with(ink, "1dlt")) return 1;
  if (starts_with(ink, "csc2") && (byte(ink, 9) == 4 || byte(ink, 9) == 6)) return byte(ink, 9);
  return {};
}

// The inks that the converters make.
unsigned choose_inks(const print_options& options, print_tables& tables) {
  unsigned inks = options.split ? 4 : options.inks.value_or(4);
  if (tables.ink) {
    const unsigned made = inks_made_by(*tables.ink).value_or(inks);
    if ((options.inks || options.split) && inks != made) {
      throw user_error(tables.ink->name + ": makes " + std::to_string(made) + " inks, expected " +
                       std::to_string(inks) + (options.split ? " for --split" : " by --inks"));
    }
    inks = made;
  } else if (inks == 1) {
    tables.ink = {"the kit's tone curve", kit::black_ink_curve().encode()};
  } else {
    tables.ink = {"the kit's colour table", (options.split ? kit::split_ink_table() : kit::ink_table(inks)).encode()};
  }
  if (inks == 1 && !(tables.rgb && leaves_one_sample(*tables.rgb))) {
    tables.gray = {"the kit's gray table", kit::subtype_table("gray")};
  }
  return inks;
}

// Returns the planes that come out.
unsigned choose_plane_curves(const print_options& options, unsigned inks, plane_curves& post) {
  constexpr std::string_view names[] = {"k", "c", "m", "y", "lc", "lm"};
  if (options.split) post.main = {"the kit's split into six inks", kit::split_curves().encode()};
  for (const std::string& argument : options.plane_curves) {
    named_curve curve = read_curve(argument, names);
    put(curve.of ? post.planes[*curve.of] : post.main, std::move(curve.image));
  }
  if (post.main && inks > 1 && byte(*post.main, 8) == 1) {  // the same for every plane
    post.main->image = kit::curve_image{.curves = std::vector<kit::curve>(inks, only_curve(*post.main))}.encode();
  }
  const unsigned planes = planes_made(post, inks);
  for (std::size_t p = planes; p < post.planes.size(); ++p) {
    if (post.planes[p]) {
      throw user_error(post.planes[p]->name + ": belongs to plane " + std::string(names[p]) + ", which a print in " +
                       std::to_string(planes) + " inks does not have");
    }
  }
  return planes;
}

unsigned levels_up_to(unsigned most, unsigned usual, const print_options& options, const char* of) {
  const unsigned levels = options.levels.value_or(usual);
  if (levels > most) throw user_error("--levels: " + std::string(of) + " has 2 to " + std::to_string(most));
  return levels;
}

// Levels, and cells where they are asked for.
kit::edpr_table error_diffusion_levels(const print_options& options, unsigned planes) {
  const auto [x, y] = options.cells.value_or(dot_scale{});
  const unsigned dots = x * y;
  const unsigned levels = options.cells ? levels_up_to(dots + 1, dots + 1, options, "a cell")
                                        : levels_up_to(16, 2, options, "error diffusion");
  const kit::modulation noise = options.modulation == "none" ? kit::no_modulation() : kit::fine_noise_for(levels);
  return options.cells ? kit::cell_parameters(planes, x, y, levels, noise) : kit::ed_parameters(planes, levels, noise);
}

bool dithers(const print_options& options, const print_tables& tables) {
  return options.halftone.empty() ? tables.dither || !options.matrix.empty() : options.halftone == "dither";
}

void choose_halftone(const print_options& options, unsigned planes, print_tables& tables) {
  if (!dithers(options, tables)) {
    if (!tables.parameters) {
      tables.parameters = {"the kit's levels", error_diffusion_levels(options, planes).encode()};
    }
    if (!tables.spread) {
      tables.spread = {"the kit's filter",
                       kit::ed_distribution(options.filter.empty() ? "fan" : options.filter).encode()};
    }
  } else if (!tables.dither) {
    tables.dither = {
        "the kit's threshold matrix",
        kit::dither_parameters(planes, levels_up_to(255, 2, options, "the dither"),
                               options.matrix.empty() ? "blue-noise" : options.matrix, options.sample_bits() == 16)
            .encode()};
  }
}

// Options of which one would have no effect beside the other.
void refuse_contradictions(const print_options& o, const print_tables& own, line_format source) {
  const bool dither = dithers(o, own), holds_inks = source.samples == 4;
  const struct {
    bool found;
    const char* sentence;
  } contradictions[] = {
      {!o.balance2.empty() && (!o.balance.empty() || o.lift != 0),
       "--balance2 belongs to the second pre-processor, --balance and --lift to the first"},
      {o.split && o.inks && *o.inks != 6, "--split makes six inks"},
      {dither && !o.filter.empty(), "--filter belongs to error diffusion, not to the dither"},
      {dither && !o.modulation.empty(), "--modulation belongs to error diffusion, not to the dither"},
      {dither && o.cells, "--cells belong to error diffusion, not to the dither"},
      {dither && o.precision && *o.precision != 16, "--precision belongs to error diffusion, not to the dither"},
      {dither && (own.parameters || own.spread), "\"edpr\" and \"edtb\" belong to error diffusion, not to the dither"},
      {!dither && !o.matrix.empty(), "--matrix belongs to the dither, not to error diffusion"},
      {!dither && own.dither, "\"dith\" belongs to the dither, not to error diffusion"},
      {!o.matrix.empty() && own.dither, "--matrix and the \"dith\" table both give the threshold matrix"},
      {o.cells && own.parameters, "--cells and the \"edpr\" table both say what becomes of a pixel"},
      {holds_inks && (own.tone.any() || own.rgb || own.ink),
       "a picture in C, M, Y, K goes straight to its inks: tone options and colour tables are for RGB and gray"},
      {holds_inks && o.inks && *o.inks != (o.split ? 6U : 4U),
       "a picture in C, M, Y, K has four inks, with --split six"},
  };
  for (const auto& c : contradictions) {
    if (c.found) throw user_error(c.sentence);
  }
}

}  // namespace

print_tables choose_tables(const print_options& options, line_format source) {
  print_tables tables = read_own_tables(options);
  choose_tone(options, tables.tone);
  refuse_contradictions(options, tables, source);
  const unsigned inks = source.samples == 4 ? 4 : choose_inks(options, tables);
  choose_halftone(options, choose_plane_curves(options, inks, tables.post), tables);
  return tables;
}

}  // namespace vrk::tool
