#include "halftone/ed/ed_tables.h"

#include "base/tag.h"
#include "halftone/ed/ed_widths.h"

namespace vrk {

namespace {

constexpr u32 extended_version = tag("0020");  // from here on a parameter table is of the extended form
constexpr u32 max_distribution_version = tag("0010");

plane_bytes read_planes(byte_view& image, u64 pos) {
  plane_bytes bytes{};
  for (u8& byte : bytes) byte = image.byte(pos++);
  return bytes;
}

tile read_tile(byte_view& image, u64 pos) {
  return {image.byte(pos), image.byte(pos + 1), image.byte(pos + 2), image.byte(pos + 3)};
}

ed_header read_header(byte_view& image) {
  ed_header h;
  h.extended = image.be32(4) >= extended_version;
  h.level_count = read_planes(image, 8);
  h.matrix = read_tile(image, 14);
  h.bits = read_planes(image, 18);
  if (h.extended) {
    h.scale_x = read_planes(image, 24);
    h.scale_y = read_planes(image, 30);
    h.pattern = read_tile(image, 36);
  } else {
    for (u32 p = 0; p < plane_slots; ++p) h.scale_x[p] = h.scale_y[p] = h.level_count[p] != 0;
  }
  return h;
}

bool scales_fit(const ed_header& h, u32 plane) {
  const u32 x = h.scale_x[plane], y = h.scale_y[plane];
  return (x == 1 || x == 2 || x == 4) && y >= 1 && y <= 4;
}

bool check_header(const ed_header& h) {
  if (h.matrix.entries() == 0 || (h.extended && h.pattern.entries() == 0)) return false;
  for (u32 p = 0; p < plane_slots; ++p) {
    if (h.level_count[p] != 0 && !scales_fit(h, p)) return false;
  }
  return produced_planes(h.level_count) == 1 || produced_planes_in_use(h.level_count);
}

// The lists follow the header without gaps: for all planes in use the level values, then for all the thresholds, the
// matrices, the dot patterns. Returns where the last one ends.
u64 locate_lists(ed_plan& plan) {
  const ed_header& h = plan.header;
  u64 pos = h.extended ? 40 : 24;
  const auto locate = [&](std::array<u64, plane_slots>& at, auto bytes_for_levels) {
    for (u32 p = 0; p < plane_slots; ++p) {
      at[p] = pos;
      if (const u32 n = h.level_count[p]; n != 0) pos += bytes_for_levels(n);
    }
  };
  locate(plan.values_at, [](u64 n) { return 2 * n; });
  locate(plan.thresholds_at, [](u64 n) { return 2 * (n - 1); });
  locate(plan.matrix_at, [&](u64) { return h.matrix.entries(); });
  locate(plan.patterns_at, [&](u64 n) { return 2 * n * h.pattern.entries(); });
  return pos;
}

// What a driver knows the handle to need: record and shared tables, then for every plane in use its lists (thresholds
// and, in the extended form, four bytes per level included), value-to-level table, error lines and line of levels.
constexpr u64 handle_bytes(const ed_header& h, u64 width, u64 distribution_rows, u64 range) {
  u64 bytes = 12739 + width + 2 * distribution_columns * distribution_rows + (h.extended ? width : 0);
  for (const u64 n : h.level_count) {
    if (n == 0) continue;
    bytes += 4 * n - 2 + h.matrix.entries() + 3 * range + 5 * width + 40;
    if (h.extended) bytes += 2 * n * (h.pattern.entries() + 2) + 2 * width;
  }
  return bytes;
}
static_assert(handle_bytes({.level_count = {2}, .matrix = {16, 16}}, 4800, 511, 256) == 49763);

bool check_distribution(byte_view image, ed_plan& plan) {
  if (image.be32(0) != tag("edtb")) return false;
  if (image.be32(4) > max_distribution_version) return false;
  plan.distribution_rows = image.be16(8);
  if (image.byte(10) != distribution_columns || plan.distribution_rows == 0) return false;
  image.take(distribution_header_bytes, 2 * u64(distribution_columns) * plan.distribution_rows);
  return image.ok();
}

}  // namespace

bool ed_check_tables(byte_view params, byte_view distribution, u32 width, u32 flags, ed_plan& plan) {
  if (params.be32(0) != tag("edpr")) return false;
  plan.flags = flags;
  plan.width = width;
  plan.header = read_header(params);
  params.take(0, locate_lists(plan));
  if (!params.ok()) return false;
  if (!check_header(plan.header)) return false;
  if (!check_distribution(distribution, plan)) return false;
  plan.planes = plan.header.level_count[k_table_slot] == 0 ? 0 : produced_planes(plan.header.level_count);
  plan.size = size_or_0(handle_bytes(plan.header, width, plan.distribution_rows, ed_value_range(flags)));
  return plan.size != 0;
}

}  // namespace vrk
