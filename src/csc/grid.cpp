#include "csc/grid.h"

#include "base/flags.h"
#include "csc/tetra_sse2.h"

namespace vrk {
namespace {

constexpr u64 header_bytes = 12;

template <class sample>
bool check_axis_increasing(std::span<const sample> axis) {
  for (std::size_t i = 1; i < axis.size(); ++i) {
    if (axis[i] <= axis[i - 1]) return false;
  }
  return true;
}

// Entry x: how many of the positions 1 ... N - 2 are not above x.
template <class sample>
void build_index_table(std::span<const sample> axis, std::span<u8> index) {
  u8 cell = 0;
  for (std::size_t level = 0; level < index.size(); ++level) {
    if (cell + 2u < axis.size() && level == axis[cell + 1u]) ++cell;
    index[level] = cell;
  }
}

// Truncated quotients; integers, because no quotient comes near enough to the next whole number for doubles to differ.
template <int work>
void build_reciprocal_table(std::span<const sample_of<work>> axis, std::span<u32> recip) {
  constexpr u32 one = 1u << (precision<work>::frac_shift + precision<work>::value_shift);
  for (std::size_t i = 0; i < recip.size(); ++i) recip[i] = one / u32(axis[i + 1] - axis[i]);
}

template <int work>
bool build(const grid_plan& plan, byte_view& image, carver& block, color_grid& grid) {
  using sample = sample_of<work>;
  constexpr u32 levels = 1u << work;
  const u64 n = plan.n, points = n * n * n;

  std::span<sample> axis[3];
  std::span<u8> index[3];
  std::span<u32> recip[3];
  for (auto& section : axis) section = block.section<sample>(n);
  const std::span<sample> grid_samples = block.section<sample>(plan.format->stored * points);
  block.read_behind(4);  // points of six samples are loaded as vectors of eight
  for (auto& section : index) section = block.section<u8>(levels);
  for (auto& section : recip) section = block.section<u32>(n - 1);
  if (!block.ok() || !image.take(header_bytes, 3 * 2 * n)) return false;

  grid.grid_points = plan.n;
  grid.points = reinterpret_cast<u8*>(grid_samples.data());
  grid.bounded = 1;
  for (u32 a = 0; a < 3; ++a) {
    const u8* const positions = image.at(header_bytes + a * 2 * n);
    for (u32 i = 0; i < n; ++i) axis[a][i] = rescale<16, work>(load_be16(positions + 2 * i));
    if (!check_axis_increasing<sample>(axis[a])) return false;
    build_index_table<sample>(axis[a], index[a]);
    build_reciprocal_table<work>(axis[a], recip[a]);
    if (!is_bounded<work>(axis[a], recip[a])) grid.bounded = 0;
    grid.axes[a].axis = reinterpret_cast<u8*>(axis[a].data());
    grid.axes[a].index = index[a].data();
    grid.axes[a].recip = recip[a].data();
  }
  return decode_grid(image, header_bytes + 6 * n, *plan.storage, *plan.format, points, work == 12, grid.points.get());
}

}  // namespace

bool check_grid_header(byte_view& image, std::span<const grid_format> formats, u8 delta, grid_plan& plan) {
  const u8 in_channels = image.byte(8), out_channels = image.byte(9), n = image.byte(10), code = image.byte(11);
  if (image.size() <= header_bytes || in_channels != 3 || n < 2) return false;
  plan = {n, nullptr, nullptr};
  for (const grid_format& format : formats) {
    if (format.channels == out_channels) plan.format = &format;
  }
  for (const grid_storage& storage : grid_storages) {
    if (storage.code == code && (!storage.delta || code == delta)) plan.storage = &storage;
  }
  return plan.format != nullptr && plan.storage != nullptr;
}

bool build_grid(const grid_plan& plan, byte_view& image, u32 flags, carver& block, color_grid& grid) {
  return has(flags, VRK_PREC12) ? build<12>(plan, image, block, grid) : build<8>(plan, image, block, grid);
}

}  // namespace vrk
