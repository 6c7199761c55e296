#include "kit/explain.h"

#include <algorithm>
#include <cstdio>

#include "base/byte_view.h"
#include "base/tag.h"
#include "kit/blob.h"
#include "kit/color_table.h"
#include "kit/delta_stream.h"
#include "kit/inspect.h"
#include "kit/planes.h"

namespace vrk::kit {
namespace {

constexpr u32 edtb_newest = tag("0010"), extended_form = tag("0020");

std::string number(u64 v) { return std::to_string(v); }

refusal mismatch(std::string_view field, u64 found, u64 offset, std::string_view expected) {
  return {std::string(field), number(found), offset, std::string(expected)};
}

refusal too_short(byte_view image, const std::string& expected) {
  return {"length", number(image.size()), {}, expected};
}
refusal too_short(byte_view image, u64 header) { return too_short(image, "at least " + number(header) + " bytes"); }

std::string plane_name(u64 plane) { return std::string(table_plane_names[std::size_t(plane)]); }

refusal no_levels(u64 plane, u64 offset, std::string_view why) {
  return mismatch("level count of plane " + plane_name(plane), 0, offset, "at least 1: " + std::string(why));
}
constexpr std::string_view six_are_used = "the fifth and sixth plane need all six";

refusal empty(std::string_view field, u64 width, u64 height, u64 offset) {
  return {std::string(field), number(width) + " x " + number(height), offset, "at least 1 x 1"};
}

// Four characters in quotes, or a number if they cannot be printed.
std::string quoted(u32 code) {
  std::string text = "\"";
  for (int shift = 24; shift >= 0; shift -= 8) {
    const u8 c = u8(code >> shift);
    if (c < 0x20 || c > 0x7E) {
      char hex[16];
      static_cast<void>(std::snprintf(hex, sizeof hex, "0x%08X", code));
      return hex;
    }
    text += char(c);
  }
  return text + '"';
}

// Checks magic and version, with which every image begins. newest: 0 accepts every version; version_at: its offset.
refusal wrong_start(byte_view image, const char (&magic)[5], u32 newest, u64 header, u64 version_at = 4) {
  if (image.size() < 4) return too_short(image, header);
  if (const u32 found = image.be32(0); found != tag(magic)) {
    return {"magic", quoted(found), 0, quoted(tag(magic))};
  }
  if (newest != 0 && image.size() >= version_at + 4 && image.be32(version_at) > newest) {
    return {"version", quoted(image.be32(version_at)), version_at, quoted(newest) + " or older"};
  }
  if (image.size() < header) return too_short(image, header);
  return {};
}

struct grid_header {
  u64 channels, points;
  grid_encoding encoding;
};

// Bytes of the grid in its encoding; of a delta stream only those of the first samples.
u64 stored_grid_bytes(const grid_header& h) {
  const u64 count = h.points * h.points * h.points;
  switch (h.encoding) {
    case grid_encoding::raw16:
      return 2 * h.channels * count;
    case grid_encoding::packed12:
      return h.channels == 3 ? 9 * (count / 2) + 6 * (count % 2) : 3 * h.channels * count / 2;
    case grid_encoding::packed10:
      if (h.channels == 3) return 15 * (count / 4) + 4 * (count % 4);
      return h.channels == 4 ? 5 * count : 15 * (count / 2) + 8 * (count % 2);
    case grid_encoding::raw8:
      return h.channels * count;
    default:
      return h.channels;
  }
}

refusal wrong_axes_or_length(byte_view image, const grid_header& h, bool prec12) {
  const u64 expected = 12 + 6 * h.points + stored_grid_bytes(h);
  if (image.size() < expected) {
    return too_short(image, number(expected) + " bytes for " + number(h.points) + " grid points per axis in encoding " +
                                number(u64(h.encoding)));
  }
  for (u64 i = 0; i < 3 * h.points; ++i) {
    if (i % h.points == 0) continue;
    const int dropped = prec12 ? 4 : 8;
    const u64 offset = 12 + 2 * i;
    const u16 before = image.be16(offset - 2), here = image.be16(offset);
    if (here >> dropped <= before >> dropped) {
      return mismatch(std::string(1, "RGB"[i / h.points]) + " axis position [" + number(i % h.points) + "]", here,
                      offset,
                      "more than " + number(before) + " before it in the top " + (prec12 ? "12" : "8") + " bits");
    }
  }
  return {};
}

// Differences that leave the range of samples, or an image that ends before them.
refusal wrong_differences(const bytes& image, const grid_header& h) {
  const unsigned bits = h.encoding == grid_encoding::delta8 ? 8 : 10;
  const auto fault = first_delta_fault(image, 12 + 6 * h.points, unsigned(h.channels), unsigned(h.points), bits);
  if (!fault) return {};
  const auto along = [&](u64 axis_points) { return number(fault->point / axis_points % h.points); };
  const std::string place =
      "at grid point (" + along(h.points * h.points) + ", " + along(h.points) + ", " + along(1) + ") of " +
      (h.channels == 3 ? std::string(1, "RGB"[fault->plane]) : "plane " + plane_name(table_position[fault->plane]));
  if (!fault->sample) {
    return {"length", number(image.size()), {}, "more for its differences, which end before the one " + place};
  }
  return {"sample " + place, std::to_string(*fault->sample), fault->offset, "0 to " + number((1U << bits) - 1)};
}

refusal wrong_grid(const bytes& table, bool second, bool prec12) {
  byte_view image(table.data(), table.size());
  if (image.byte(8) != 3) return mismatch("input channels", image.byte(8), 8, "3");
  const grid_header h{image.byte(9), image.byte(10), grid_encoding(image.byte(11))};
  if (second ? h.channels != 4 && h.channels != 6 : h.channels != 3) {
    return mismatch("output channels", h.channels, 9, second ? "4 or 6" : "3");
  }
  if (h.points < 2) return mismatch("grid points per axis", h.points, 10, "at least 2");
  const grid_encoding delta = second ? grid_encoding::delta10 : grid_encoding::delta8;
  if (h.encoding > grid_encoding::raw8 && h.encoding != delta) {
    return mismatch("grid encoding", u64(h.encoding), 11, "0, 1, 2, 3 or " + number(u64(delta)));
  }
  if (refusal why = wrong_axes_or_length(image, h, prec12); why) return why;
  return h.encoding == delta ? wrong_differences(table, h) : refusal{};
}

refusal wrong_curves_or_length(byte_view image, u64 curves) {
  if (image.be16(10) != 1024) return mismatch("entry count", image.be16(10), 10, "1024");
  const u64 expected = 12 + 2048 * curves;
  if (image.size() >= expected) return {};
  return too_short(image, number(expected) + " bytes for its curves");
}

// Level values of all planes, in record order: the image lists them from `at` on, as many as the bytes at `counts` say.
std::array<std::vector<std::uint16_t>, 6> listed_levels(byte_view image, u64 counts, u64 at) {
  std::array<std::vector<std::uint16_t>, 6> listed{};
  for (std::size_t p = 0; p < 6; ++p) {
    for (u32 n = image.byte(counts + p); n != 0; --n, at += 2) listed[p].push_back(image.be16(at));
  }
  std::array<std::vector<std::uint16_t>, 6> values{};
  for (std::size_t p = 0; p < 6; ++p) values[p] = std::move(listed[table_position[p]]);
  return values;
}

bool is_extended(byte_view image) { return image.be32(4) >= extended_form; }

}  // namespace

std::string refusal::text() const {
  if (field.empty()) return {};
  return "has " + field + " " + found + (offset ? " at offset " + number(*offset) : "") + ", expected " + expected;
}

refusal why_refused_csc1(const bytes& image, bool prec12) {
  byte_view view(image.data(), image.size());
  if (refusal why = wrong_start(view, "csc1", 0, 8); why) return why;
  if (is_fixed_rule(image)) return {};
  if (refusal why = wrong_start(view, "csc1", version_001z, 13); why) return why;
  return wrong_grid(image, false, prec12);
}

refusal why_refused_csc2(const bytes& image, unsigned input_samples, bool prec12) {
  byte_view view(image.data(), image.size());
  if (view.be32(0) == tag("1dlt")) {
    if (input_samples == 1) return why_refused_curves(image, 1);
    return {"magic", quoted(tag("1dlt")), 0, "\"csc2\": a tone curve takes pixels of one sample"};
  }
  if (refusal why = wrong_start(view, "csc2", version_001z, 13); why) return why;
  return wrong_grid(image, true, prec12);
}

refusal why_refused_edpr(const bytes& image) {
  byte_view view(image.data(), image.size());
  if (refusal why = wrong_start(view, "edpr", 0, 24); why) return why;
  const bool extended = is_extended(view);
  if (extended && view.size() < 40) return too_short(view, 40);
  const auto levels = [&view](u64 plane) -> u64 { return view.byte(8 + plane); };
  const u64 matrix = u64{view.byte(14)} * view.byte(15), pattern = extended ? u64{view.byte(36)} * view.byte(37) : 0;
  if (matrix == 0) return empty("modulation matrix", view.byte(14), view.byte(15), 14);
  if (extended && pattern == 0) return empty("dot pattern", view.byte(36), view.byte(37), 36);
  const bool six = levels(4) != 0 && levels(5) != 0;
  u64 expected = extended ? 40 : 24;
  for (u64 p = 0; p < 6; ++p) {
    const u64 n = levels(p);
    const std::string plane = " of plane " + plane_name(p);
    if (n == 0) {
      if (six) return no_levels(p, 8 + p, six_are_used);
      continue;
    }
    const u64 across = view.byte(24 + p), down = view.byte(30 + p);
    if (extended && across != 1 && across != 2 && across != 4) {
      return mismatch("scale_x" + plane, across, 24 + p, "1, 2 or 4");
    }
    if (extended && (down < 1 || down > 4)) return mismatch("scale_y" + plane, down, 30 + p, "1 to 4");
    expected += 2 * n + 2 * (n - 1) + matrix + 2 * n * pattern;
  }
  if (view.size() < expected) return too_short(view, number(expected) + " bytes for its lists");
  return {};
}

refusal why_refused_edtb(const bytes& image) {
  byte_view view(image.data(), image.size());
  if (refusal why = wrong_start(view, "edtb", edtb_newest, 12); why) return why;
  const u64 rows = view.be16(8), columns = view.byte(10);
  if (rows == 0) return mismatch("row count", rows, 8, "at least 1");
  if (columns != 7) return mismatch("column count", columns, 10, "7");
  const u64 expected = 12 + 14 * rows;
  if (view.size() < expected) return too_short(view, number(expected) + " bytes for its rows");
  return {};
}

refusal why_refused_dith(const bytes& image) {
  byte_view view(image.data(), image.size());
  if (refusal why = wrong_start(view, "dith", version_001z, 32); why) return why;
  const auto levels = [&view](u64 plane) -> u64 { return view.byte(20 + plane); };
  if (levels(3) == 0) return no_levels(3, 23, "planes are K, or K, C, M, Y, or all six");
  const bool six = levels(4) != 0 && levels(5) != 0;
  u64 expected = 32;
  for (u64 p = 0; p < 6; ++p) {
    const u64 n = levels(p), bits = view.byte(26 + p);
    const u64 width = view.byte(8 + 2 * p), height = view.byte(9 + 2 * p), cells = width * height;
    const std::string plane = " of plane " + plane_name(p);
    if (n == 0) {
      if (six) return no_levels(p, 20 + p, six_are_used);
      continue;
    }
    if (cells == 0) return empty("matrix" + plane, width, height, 8 + 2 * p);
    if (n < 2) return mismatch("level count" + plane, n, 20 + p, "at least 2");
    if (bits != 1 && bits != 2 && bits != 4 && bits != 8) return mismatch("bits" + plane, bits, 26 + p, "1, 2, 4 or 8");
    expected += 2 * n + 2 * cells;
  }
  if (view.size() < expected) return too_short(view, number(expected) + " bytes for its lists");
  return {};
}

refusal why_refused_curves(const bytes& image, unsigned count) {
  byte_view view(image.data(), image.size());
  if (refusal why = wrong_start(view, "1dlt", version_001z, 12); why) return why;
  if (view.byte(8) != count) return mismatch("curve count", view.byte(8), 8, number(count));
  return wrong_curves_or_length(view, count);
}

refusal why_refused_main_curves(const bytes& image, unsigned planes) {
  byte_view view(image.data(), image.size());
  if (refusal why = wrong_start(view, "1dlt", version_002z, 12); why) return why;
  const u64 curves = view.byte(8), stored = view.byte(9), made = stored == 0 ? curves : stored;
  if (curves != 1 && curves != 4 && curves != 6) return mismatch("curve count", curves, 8, "1, 4 or 6");
  if (curves < planes) return mismatch("curve count", curves, 8, "one for each of " + number(planes) + " planes");
  if (view.be32(4) == tag("0010")) return wrong_curves_or_length(view, curves);
  if (curves != planes) return mismatch("curve count", curves, 8, number(planes) + ", as many as planes come in");
  if (made != curves && !(curves == 4 && made == 6)) {
    return mismatch("output count", made, 9, curves == 4 ? "4 or 6" : number(curves));
  }
  return wrong_curves_or_length(view, std::max(curves, made));
}

refusal why_refused_plane_curve(const bytes& image) {
  if (refusal why = why_refused_curves(image, 1)) return why;
  byte_view view(image.data(), image.size());
  if (view.byte(9) > 1) return mismatch("output count", view.byte(9), 9, "0 or 1");
  return {};
}

refusal why_refused_blob(const bytes& image) {
  byte_view view(image.data(), image.size());
  constexpr std::string_view types[] = {"CS1T", "CS2T", "HATT", "INGM", "OTGM", "HRKT"};
  const u32 newest = view.be32(4) == tag("INGM") ? version_002z : version_001z;
  if (refusal why = wrong_start(view, "CTSI", newest, blob_header_bytes, 8)) return why;
  const std::string_view type(reinterpret_cast<const char*>(view.at(4)), 4);
  if (std::find(std::begin(types), std::end(types), type) == std::end(types)) {
    return {"type", quoted(view.be32(4)), 4, "CS1T, CS2T, HATT, INGM, OTGM or HRKT"};
  }
  if (view.byte(31) != 0x1A) return mismatch("end of header", view.byte(31), 31, "26");
  const u64 count = view.be16(32);
  if (count == 0) return mismatch("entry count", 0, 32, "at least 1");
  const u64 expected = blob_header_bytes + blob_entry_bytes * count;
  if (view.size() < expected) return too_short(view, number(expected) + " bytes for its directory");
  return {};
}

std::array<std::vector<std::uint16_t>, 6> ed_level_values(const bytes& edpr) {
  byte_view view(edpr.data(), edpr.size());
  return listed_levels(view, 8, is_extended(view) ? 40 : 24);
}

std::array<std::vector<std::uint16_t>, 6> dither_level_values(const bytes& dith, bool in16) {
  auto values = listed_levels(byte_view(dith.data(), dith.size()), 20, 32);
  const unsigned top = in16 ? 1023 : 255;
  for (std::vector<std::uint16_t>& plane : values) {
    if (plane.size() < 2 || plane.back() == top) continue;
    for (std::size_t i = 0; i < plane.size(); ++i) plane[i] = std::uint16_t(i * (top + 1) / (plane.size() - 1));
    plane.back() = std::uint16_t(top);
  }
  return values;
}

}  // namespace vrk::kit
