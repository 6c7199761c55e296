#include "kit/inspect.h"

#include <algorithm>
#include <numeric>

#include "base/byte_view.h"
#include "base/tag.h"

namespace vrk::kit {
namespace {

byte_view view_of(const bytes& image) { return {image.data(), image.size()}; }

constexpr u64 curve_header_bytes = 12;

}  // namespace

table_kind kind_of(const bytes& image) {
  switch (view_of(image).be32(0)) {
    case tag("csc1"):
      return table_kind::csc1;
    case tag("csc2"):
      return table_kind::csc2;
    case tag("1dlt"):
      return table_kind::curves;
    case tag("edpr"):
      return table_kind::edpr;
    case tag("edtb"):
      return table_kind::edtb;
    case tag("dith"):
      return table_kind::dith;
    case tag("CTSI"):
      return table_kind::blob;
    default:
      return table_kind::unknown;
  }
}

bool is_fixed_rule(const bytes& csc1) {
  const u32 subtype = view_of(csc1).be32(4);
  return leaves_one_sample(csc1) || subtype == tag("thrh") || subtype == tag("sold");
}

bool leaves_one_sample(const bytes& csc1) {
  const u32 subtype = view_of(csc1).be32(4);
  return subtype == tag("gray") || subtype == tag("blck");
}

std::optional<unsigned> inks_made(const bytes& csc2) {
  if (kind_of(csc2) == table_kind::curves) return 1;
  const unsigned inks = view_of(csc2).byte(9);
  if (kind_of(csc2) == table_kind::csc2 && (inks == 4 || inks == 6)) return inks;
  return {};
}

unsigned curve_count(const bytes& curves) { return view_of(curves).byte(8); }

std::optional<curve> only_curve(const bytes& curves) {
  byte_view image = view_of(curves);
  if (curve_count(curves) != 1) return {};
  curve levels{};
  for (std::size_t i = 0; i < levels.size(); ++i) levels[i] = image.be16(curve_header_bytes + 2 * i);
  if (!image.ok()) return {};
  return levels;
}

unsigned planes_made(const bytes& main_curves, unsigned planes) {
  byte_view image = view_of(main_curves);
  const bool counts_planes = image.be32(4) != tag("0010");
  return counts_planes && image.byte(9) == 6 ? 6 : planes;  // a table that makes any other number is refused
}

std::uint64_t columns_of_a_repeat(const bytes& edpr) {
  const auto columns = [&edpr](std::size_t width_at) {
    byte_view view = view_of(edpr);
    const u64 width = std::max<u64>(view.byte(width_at), 1), shift = view.byte(width_at + 2);
    return width * (width / std::gcd(width, shift));
  };
  const bool extended = view_of(edpr).be32(4) >= tag("0020");
  return std::lcm(columns(14), extended ? columns(36) : 1);
}

std::string blob_type(const bytes& image) {
  if (kind_of(image) != table_kind::blob || image.size() < 8) return {};
  return {image.begin() + 4, image.begin() + 8};
}

}  // namespace vrk::kit
