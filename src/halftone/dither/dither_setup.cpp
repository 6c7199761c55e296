#include "halftone/dither/dither_setup.h"

#include <algorithm>
#include <span>

#include "base/tag.h"
#include "halftone/dither/dither_kernels.h"

namespace vrk {
namespace {

constexpr u64 header_bytes = 32;

bool is_usable(const dither_plane_header& plane) {
  const bool bits_fit_bytes = plane.bits == 1 || plane.bits == 2 || plane.bits == 4 || plane.bits == 8;
  return plane.cells() != 0 && plane.level_count >= 2 && bits_fit_bytes;
}

std::span<u16> read_values(byte_view& image, u64& pos, u64 count, carver& block) {
  const std::span<u16> values = block.section<u16>(count);
  for (u16& value : values) {
    value = image.be16(pos);
    pos += 2;
  }
  return values;
}

// Level values whose last is not the top level say nothing about this input width: an even spread replaces them.
void normalise_levels(std::span<u16> values, u32 top) {
  if (values.empty() || values.back() == top) return;
  const u32 intervals = u32(values.size()) - 1;
  for (u32 i = 0; i < intervals; ++i) values[i] = u16(i * (top + 1) / intervals);
  values.back() = u16(top);
}

// Spreads the matrix values over one level interval: 0 to its bottom, `divisor` to its top.
struct threshold_scale {
  u32 quantum;     // matrix values count in steps of it
  double divisor;  // D, at least 1

  static threshold_scale of(u64 cells, bool in16) {
    const u64 ranks = in16 ? cells : cells / 4;
    return {in16 ? 1u : 4u, double(std::max<u64>(ranks, 2) - 1)};
  }

  u16 threshold(u32 matrix_value, i32 low, i32 high) const {
    const i64 product = i64{matrix_value / quantum} * (high - low - 1);  // negative where levels do not ascend
    const double exact = (double(product) / divisor + 0.5) + low;
    return exact <= 0 ? u16{0} : exact >= 65535 ? u16{65535} : u16(exact);
  }
};

void take_thresholds(dither_plane& plane, carver& block) {
  const u32 table_bytes = threshold_row_bytes(plane.width) * plane.height;
  const std::span<ref<u8>> tables = block.section<ref<u8>>(plane.level_count - 1u);
  const std::span<u8> entries = block.take<u8>(u64{tables.size()} * table_bytes);
  block.read_behind(threshold_read_bytes);
  if (!block.ok()) return;

  plane.thresholds = tables.data();
  for (std::size_t j = 0; j < tables.size(); ++j) *new (&tables[j]) ref<u8> = &entries[j * table_bytes];
}

void build_level_lut(dither_plane& plane, u32 flags, carver& block) {
  const u32 top = dither_top_level(flags), intervals = plane.level_count - 1u;
  const std::span<u8> lut = block.section<u8>(top + 1);
  if (!block.ok()) return;

  std::fill(lut.begin(), lut.end(), u8{0});  // levels below the first level value lie in interval 0
  for (u32 j = 0; j < intervals; ++j) {
    const u32 end = std::min<u32>(plane.level_values[j + 1], top + 1);
    for (u32 v = plane.level_values[j]; v < end; ++v) lut[v] = u8(j);
  }
  lut[top] = u8(intervals - 1);
  lut[0] = 0;  // never above a threshold: an empty sample gets level 0 whatever the level values are
  plane.level_lut = lut.data();
}

// Only the samples of interval j, as the look-up table has them, meet its thresholds. So those that lie beyond the
// interval may as well lie at its ends. The look-up table never falls: where level values do, the intervals that follow
// replace all above, up to the next fall, and those behind the last one reach full scale.
struct threshold_limits {
  u32 low, high;

  threshold_limits(std::span<const u8> level_lut, u32 j) {
    const auto [first, end] = std::equal_range(level_lut.begin(), level_lut.end(), j);
    low = std::max(u32(first - level_lut.begin()), 1u) - 1;  // which its first sample is above
    high = u32(end - level_lut.begin()) - 1;
  }
};

void fill_thresholds(dither_plane& plane, u32 flags) {
  const bool in16 = has(flags, VRK_IN16);
  const threshold_scale scale = threshold_scale::of(u64{plane.width} * plane.height, in16);
  for (u32 j = 0; j + 1 < plane.level_count; ++j) {
    const i32 low = plane.level_values[j], high = plane.level_values[j + 1];
    const threshold_limits limits({&plane.level_lut[0], dither_top_level(flags) + 1}, j);
    u8* row = plane.thresholds[j].get();
    for (u32 y = 0, cell = 0; y < plane.height; ++y, row += threshold_row_bytes(plane.width)) {
      for (u32 x = 0; x < plane.width; ++x, ++cell) {
        const u32 exact = scale.threshold(plane.matrix[cell], low, high);
        const u32 threshold = std::clamp(exact, limits.low, limits.high);
        if (in16) {
          store_sample(&row[2 * x], u16(threshold));
        } else {
          row[x] = row[plane.width + x] = u8(threshold);
        }
      }
    }
  }
}

}  // namespace

bool dither_check_table(byte_view& image, u32 flags, dither_plan& plan) {
  if (image.be32(0) != tag("dith") || image.be32(4) > version_001z) return false;

  u64 announced = header_bytes;
  plane_bytes level_counts{};
  for (u32 p = 0; p < plane_slots; ++p) {
    const dither_plane_header plane{image.byte(8 + 2 * p), image.byte(9 + 2 * p), image.byte(20 + p),
                                    image.byte(26 + p)};
    level_counts[p] = plane.level_count;
    plan.plane[p] = plane;
    if (!plane.present()) continue;
    if (!is_usable(plane)) return false;
    announced += 2 * (plane.level_count + plane.cells());
  }
  if (!produced_planes_in_use(level_counts)) return false;
  plan.flags = flags;
  plan.plane_count = produced_planes(level_counts);
  return image.take(0, announced);
}

u64 dither_handle_size(const dither_plan& plan) {
  const u64 lut_bytes = dither_top_level(plan.flags) + 1;
  u64 size = dither_fixed_bytes;
  for (const dither_plane_header& plane : plan.plane) {
    const u64 n = plane.level_count;
    if (plane.present()) size += lut_bytes + 2 * n * plane.cells() + 6 * n - 4;
  }
  return size;
}

bool dither_build(const dither_plan& plan, u32 line_width, byte_view& image, carver& block) {
  auto* const handle = block.record<dither_handle>();
  if (handle == nullptr) return false;
  handle->flags = plan.flags;
  handle->plane_count = plan.plane_count;
  handle->line_width = line_width;

  for (u32 p = 0; p < plane_slots; ++p) {
    const dither_plane_header& header = plan.plane[p];
    dither_plane& plane = handle->plane[p];
    plane.width = header.width;
    plane.height = header.height;
    plane.level_count = header.level_count;
    plane.bits = header.bits;
  }

  const auto for_each_present = [&](auto build) {
    for (dither_plane& plane : handle->plane) {
      if (plane.level_count != 0) build(plane);
    }
  };
  u64 pos = header_bytes;
  for_each_present([&](dither_plane& plane) {
    const std::span<u16> values = read_values(image, pos, plane.level_count, block);
    normalise_levels(values, dither_top_level(plan.flags));
    plane.level_values = values.data();
  });
  for_each_present([&](dither_plane& plane) {
    plane.matrix = read_values(image, pos, u64{plane.width} * plane.height, block).data();
  });
  for_each_present([&](dither_plane& plane) { take_thresholds(plane, block); });
  for_each_present([&](dither_plane& plane) { build_level_lut(plane, plan.flags, block); });
  if (!block.ok() || !image.ok()) return false;
  for_each_present([&](dither_plane& plane) { fill_thresholds(plane, plan.flags); });
  dither_select_rows(*handle);
  return true;
}

}  // namespace vrk
