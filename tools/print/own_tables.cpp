#include "tools/print/own_tables.h"

#include <algorithm>
#include <array>

#include "kit/inspect.h"
#include "kit/tone_curves.h"
#include "tools/print/blob_argument.h"
#include "tools/print/curve_argument.h"

namespace vrk::tool {
namespace {

// Fills a place that only one table can take.
void put(std::optional<table>& place, table found) {
  if (place) throw user_error(found.name + ": takes the place of " + place->name + ", give one of them");
  place = std::move(found);
}

// A curve image with three curves is for R, G, B; else it has one for all.
void put_tone_curves(table found, tone_settings& tone) {
  std::optional<table>& place = kit::curve_count(found.image) == 3 ? tone.rgb_curves : tone.curve;
  put(place, std::move(found));
}

void put_by_kind(table found, print_tables& to) {
  switch (kit::kind_of(found.image)) {
    case kit::table_kind::csc1:
      return put(to.rgb, std::move(found));
    case kit::table_kind::csc2:
    case kit::table_kind::curves:
      return put(to.ink, std::move(found));
    case kit::table_kind::edpr:
      return put(to.parameters, std::move(found));
    case kit::table_kind::edtb:
      return put(to.distribution, std::move(found));
    case kit::table_kind::dith:
      return put(to.dither, std::move(found));
    default:
      refuse(found, "holds a table that this program does not print with");
  }
}

// The type of the blob says where its tables belong, or else the kind of the table.
void put_from_blob(blob_table from, print_tables& to) {
  if (from.type == "INGM") return put_tone_curves(std::move(from.found), to.tone);
  if (from.type == "OTGM") return put(to.post.main, std::move(from.found));
  put_by_kind(std::move(from.found), to);
}

void read_files(const table_files& files, unsigned planes, print_tables& to) {
  const auto read = [&](std::optional<table>& place, const std::string& path) {
    if (path.empty()) return;
    place = read_table(path);
    to.files.push_back(path);
  };
  read(to.rgb, files.csc1);
  read(to.ink, files.csc2);
  read(to.parameters, files.edpr);
  read(to.distribution, files.edtb);
  read(to.dither, files.dith);
  for (const std::string& blob : files.blobs) {
    blob_table from = read_from_blob(blob, planes);
    to.files.push_back(from.file);
    put_from_blob(std::move(from), to);
  }
}

// bits: of samples between stages, which the table is made for.
void link_profile(const profile_link& profile, const table& picture, unsigned bits, print_tables& to) {
  if (profile.to.empty()) return;
  to.files.push_back(profile.to);
  if (!picture.image.empty()) {
    to.ink_link = make_ink_link(profile, picture);
    return;
  }
  table made = make_linked_table(profile, {.precision = bits == 16 ? 12U : 8U}, profile.to);
  if (kit::kind_of(made.image) != kit::table_kind::csc2)
    refuse(made, "is no profile of a printer with four or six inks");
  put(to.ink, std::move(made));
}

void read_tone(const tone_options& options, tone_settings& to, std::vector<std::string>& files) {
  if (!options.balance.empty()) to.balance = {options.balance[0], options.balance[1], options.balance[2]};
  if (!options.balance2.empty()) to.balance2 = {options.balance2[0], options.balance2[1]};
  to.lift = options.lift;
  to.contrast = options.contrast;

  std::array<std::optional<table>, 3> channels;
  for (const std::string& argument : options.curves) {
    constexpr std::string_view names[] = {"r", "g", "b"};
    named_curve curve = read_curve(argument, names);
    files.push_back(curve.image.name);
    if (curve.of) {
      put(channels[*curve.of], std::move(curve.image));
    } else {
      put_tone_curves(std::move(curve.image), to);
    }
  }
  if (std::ranges::none_of(channels, [](const auto& channel) { return channel.has_value(); })) return;
  kit::curve_image all;
  for (const auto& channel : channels) all.curves.push_back(channel ? only_curve(*channel) : kit::identity_curve());
  put(to.rgb_curves, {"the curves of R, G and B", all.encode()});
}

void read_plane_curves(const std::vector<std::string>& arguments, plane_curves& to, std::vector<std::string>& files) {
  for (const std::string& argument : arguments) {
    named_curve curve = read_curve(argument, plane_names);
    files.push_back(curve.image.name);
    put(curve.of ? to.planes[*curve.of] : to.main, std::move(curve.image));
  }
}

}  // namespace

print_tables read_own_tables(const print_options& options, const table& picture) {
  print_tables own;
  read_files(options.files, options.inks.planes(), own);
  link_profile(options.inks.profile, picture, options.precision() == ed_precision::samples16 ? 16 : 8, own);
  read_tone(options.tone, own.tone, own.files);
  read_plane_curves(options.inks.plane_curves, own.post, own.files);
  return own;
}

}  // namespace vrk::tool
