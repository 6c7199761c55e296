#include "kit/explain.h"

#include <algorithm>
#include <cstdio>

#include "base/byte_view.h"
#include "base/tag.h"
#include "kit/color_table.h"
#include "kit/planes.h"

namespace vrk::kit {
namespace {

constexpr std::string_view plane_names[] = {"C", "M", "Y", "K", "fifth", "sixth"};  // table order
constexpr char no_k[] = "has no levels for K, expected K, or K, C, M, Y, or all six planes";
constexpr u32 edtb_newest = tag("0010"), extended_form = tag("0020");

std::string number(u64 v) { return std::to_string(v); }

std::string no_levels(u64 plane) {
  return "has no levels for plane " + std::string(plane_names[plane]) + ", expected all six planes";
}

std::string mismatch(std::string_view field, u64 found, std::string_view expected) {
  return "has " + std::string(field) + " " + number(found) + ", expected " + std::string(expected);
}

// Four characters in quotes, or a number if they cannot be printed.
std::string quoted(u32 code) {
  std::string text = "\"";
  for (int shift = 24; shift >= 0; shift -= 8) {
    const u8 c = u8(code >> shift);
    if (c < 0x20 || c > 0x7E) {
      char hex[16];
      std::snprintf(hex, sizeof hex, "0x%08X", code);
      return hex;
    }
    text += char(c);
  }
  return text + '"';
}

// Checks magic and version, with which every image begins. newest: 0 accepts every version.
std::string wrong_start(byte_view image, const char (&magic)[5], u32 newest, u64 header) {
  if (image.size() < 4) return mismatch("length", image.size(), "at least " + number(header) + " bytes");
  const u32 found = image.be32(0);
  if (found != tag(magic)) return "has magic " + quoted(found) + ", expected " + quoted(tag(magic));
  if (newest != 0 && image.size() >= 8 && image.be32(4) > newest) {
    return "has version " + quoted(image.be32(4)) + ", expected " + quoted(newest) + " or older";
  }
  if (image.size() < header) return mismatch("length", image.size(), "at least " + number(header) + " bytes");
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

std::string wrong_axes_or_length(byte_view image, const grid_header& h, bool prec12) {
  const u64 expected = 12 + 6 * h.points + stored_grid_bytes(h);
  if (image.size() < expected) {
    return mismatch("length", image.size(),
                    number(expected) + " bytes for " + number(h.points) + " grid points per axis in encoding " +
                        number(u64(h.encoding)));
  }
  for (u64 i = 0; i < 3 * h.points; ++i) {
    if (i % h.points == 0) continue;
    const int dropped = prec12 ? 4 : 8;
    const u16 before = image.be16(12 + 2 * (i - 1)), here = image.be16(12 + 2 * i);
    if (here >> dropped <= before >> dropped) {
      return std::string("has ") + "RGB"[i / h.points] + " axis position " + number(i % h.points) + " at " +
             number(here) + ", expected more than " + number(before) + " before it in the top " +
             (prec12 ? "12" : "8") + " bits";
    }
  }
  return {};
}

std::string wrong_grid(byte_view image, bool second, bool prec12) {
  if (image.byte(8) != 3) return mismatch("input channels", image.byte(8), "3");
  const grid_header h{image.byte(9), image.byte(10), grid_encoding(image.byte(11))};
  if (second ? h.channels != 4 && h.channels != 6 : h.channels != 3) {
    return mismatch("output channels", h.channels, second ? "4 or 6" : "3");
  }
  if (h.points < 2) return mismatch("grid points per axis", h.points, "at least 2");
  const grid_encoding delta = second ? grid_encoding::delta10 : grid_encoding::delta8;
  if (h.encoding > grid_encoding::raw8 && h.encoding != delta) {
    return mismatch("grid encoding", u64(h.encoding), "0, 1, 2, 3 or " + number(u64(delta)));
  }
  return wrong_axes_or_length(image, h, prec12);
}

std::string wrong_curves_or_length(byte_view image, u64 curves) {
  if (image.be16(10) != 1024) return mismatch("entry count", image.be16(10), "1024");
  const u64 expected = 12 + 2048 * curves;
  if (image.size() >= expected) return {};
  return mismatch("length", image.size(), number(expected) + " bytes for its curves");
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

std::string why_refused_csc1(const bytes& image, bool prec12) {
  byte_view view(image.data(), image.size());
  if (std::string why = wrong_start(view, "csc1", 0, 8); !why.empty()) return why;
  for (const u32 subtype : {tag("thrh"), tag("gray"), tag("blck"), tag("sold")}) {
    if (view.be32(4) == subtype) return {};
  }
  if (std::string why = wrong_start(view, "csc1", version_001z, 13); !why.empty()) return why;
  return wrong_grid(view, false, prec12);
}

std::string why_refused_csc2(const bytes& image, unsigned input_samples, bool prec12) {
  byte_view view(image.data(), image.size());
  if (view.be32(0) == tag("1dlt")) {
    if (input_samples == 1) return why_refused_curves(image, 1);
    return "is a tone curve, which takes one-sample pixels, expected a \"csc2\" table";
  }
  if (std::string why = wrong_start(view, "csc2", version_001z, 13); !why.empty()) return why;
  return wrong_grid(view, true, prec12);
}

std::string why_refused_edpr(const bytes& image) {
  byte_view view(image.data(), image.size());
  if (std::string why = wrong_start(view, "edpr", 0, 24); !why.empty()) return why;
  const bool extended = is_extended(view);
  if (extended && view.size() < 40) return mismatch("length", view.size(), "at least 40 bytes");
  const auto levels = [&view](u64 plane) -> u64 { return view.byte(8 + plane); };
  const u64 matrix = u64{view.byte(14)} * view.byte(15), pattern = extended ? u64{view.byte(36)} * view.byte(37) : 0;
  if (matrix == 0) return "has an empty modulation matrix, expected at least 1 x 1";
  if (extended && pattern == 0) return "has an empty dot pattern, expected at least 1 x 1";
  const bool six = levels(4) != 0 && levels(5) != 0;
  u64 expected = extended ? 40 : 24;
  for (u64 p = 0; p < 6; ++p) {
    const u64 n = levels(p);
    const std::string plane = " of plane " + std::string(plane_names[p]);
    if (n == 0) {
      if (six) return no_levels(p);
      continue;
    }
    const u64 across = view.byte(24 + p), down = view.byte(30 + p);
    if (extended && across != 1 && across != 2 && across != 4) return mismatch("scale_x" + plane, across, "1, 2 or 4");
    if (extended && (down < 1 || down > 4)) return mismatch("scale_y" + plane, down, "1 to 4");
    expected += 2 * n + 2 * (n - 1) + matrix + 2 * n * pattern;
  }
  if (view.size() < expected) return mismatch("length", view.size(), number(expected) + " bytes for its lists");
  return {};
}

std::string why_refused_edtb(const bytes& image) {
  byte_view view(image.data(), image.size());
  if (std::string why = wrong_start(view, "edtb", edtb_newest, 12); !why.empty()) return why;
  const u64 rows = view.be16(8), columns = view.byte(10);
  if (rows == 0) return mismatch("row count", rows, "at least 1");
  if (columns != 7) return mismatch("column count", columns, "7");
  const u64 expected = 12 + 14 * rows;
  if (view.size() < expected) return mismatch("length", view.size(), number(expected) + " bytes for its rows");
  return {};
}

std::string why_refused_dith(const bytes& image) {
  byte_view view(image.data(), image.size());
  if (std::string why = wrong_start(view, "dith", version_001z, 32); !why.empty()) return why;
  const auto levels = [&view](u64 plane) -> u64 { return view.byte(20 + plane); };
  if (levels(3) == 0) return no_k;
  const bool six = levels(4) != 0 && levels(5) != 0;
  u64 expected = 32;
  for (u64 p = 0; p < 6; ++p) {
    const u64 n = levels(p), bits = view.byte(26 + p), cells = u64{view.byte(8 + 2 * p)} * view.byte(9 + 2 * p);
    const std::string plane = " of plane " + std::string(plane_names[p]);
    if (n == 0) {
      if (six) return no_levels(p);
      continue;
    }
    if (cells == 0) return mismatch("matrix cells" + plane, cells, "at least 1 x 1");
    if (n < 2) return mismatch("level count" + plane, n, "at least 2");
    if (bits != 1 && bits != 2 && bits != 4 && bits != 8) return mismatch("bits" + plane, bits, "1, 2, 4 or 8");
    expected += 2 * n + 2 * cells;
  }
  if (view.size() < expected) return mismatch("length", view.size(), number(expected) + " bytes for its lists");
  return {};
}

std::string why_refused_curves(const bytes& image, unsigned count) {
  byte_view view(image.data(), image.size());
  if (std::string why = wrong_start(view, "1dlt", version_001z, 12); !why.empty()) return why;
  if (view.byte(8) != count) return mismatch("curve count", view.byte(8), number(count));
  return wrong_curves_or_length(view, count);
}

std::string why_refused_main_curves(const bytes& image, unsigned planes) {
  byte_view view(image.data(), image.size());
  if (std::string why = wrong_start(view, "1dlt", version_002z, 12); !why.empty()) return why;
  const u64 curves = view.byte(8), stored = view.byte(9), made = stored == 0 ? curves : stored;
  if (curves != 1 && curves != 4 && curves != 6) return mismatch("curve count", curves, "1, 4 or 6");
  if (curves < planes) return mismatch("curve count", curves, "one for each of " + number(planes) + " planes");
  if (view.be32(4) == tag("0010")) return wrong_curves_or_length(view, curves);
  if (curves != planes) return mismatch("curve count", curves, number(planes) + ", as many as planes come in");
  if (made != curves && !(curves == 4 && made == 6)) {
    return mismatch("output count", made, curves == 4 ? "4 or 6" : number(curves));
  }
  return wrong_curves_or_length(view, std::max(curves, made));
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
