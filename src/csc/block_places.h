// Where the pixels of a block lie in the grid: included by the files of the levels above the base, as block_passes.h
// is.

// What the vectors of a few pixels hold. fraction: from fraction_bit on, for the order of the axes.
struct pixel_places {
  lanes r, g, b;  // fractions
  lanes start;    // bytes from the first grid point to the cell's lowest corner
  lanes white;    // all bits set, or none
};

struct axis_words {
  u32 r, g, b;
};
template <int work>
axis_words strides_of(const color_grid& grid, u32 stored) {
  using axis = grid_axis_view<work>;
  return {axis(grid, 0, stored).stride, axis(grid, 1, stored).stride, axis(grid, 2, stored).stride};
}

// Input of 16 bits: a place on one axis in one word, the number of the cell from cell_bit on and below it the product
// that is shifted to the fraction. No two levels have the same place. Within a cell it is a line: origin + level *
// slope.
template <int in, int work, u32 stored>
class block_places {
  static constexpr int cell_bit = 24;
  static constexpr u32 pixels = 64;
  static_assert(fraction_limit<work>() <= 1u << (cell_bit - precision<work>::frac_shift));

 public:
  static constexpr u32 most_pixels = pixels;

  explicit block_places(const color_grid& grid, u32 layout) : samples_(layout) {
    for (u32 a = 0; a < 3; ++a) {
      const grid_axis_view<work> axis(grid, a, stored);
      index_[a] = axis.index, slope_[a] = axis.recip;
      for (u32 cell = 0; cell + 1 < grid.grid_points; ++cell) {
        origin_[a][cell] = (cell << cell_bit) - axis.axis[cell] * axis.recip[cell];
      }
    }
    constexpr u32 full = (1u << work) - 1;
    white_ = {place(0, full), place(1, full), place(2, full)};
    stride_ = strides_of<work>(grid, stored);
  }

  u32 bytes() const { return samples_.pixel; }

  // What has been looked up, with its constants: the compiler keeps a copy of these in registers.
  struct found {
    const u32 (&place)[3][pixels];
    axis_words stride, white;

    pixel_places at(u32 i) const {
      const lanes r = load_lanes(place[0] + i), g = load_lanes(place[1] + i), b = load_lanes(place[2] + i);
      constexpr int up = fraction_bit - precision<work>::frac_shift;
      return {r << up & ~stride_mask, g << up & ~stride_mask, b << up & ~stride_mask,
              (r >> cell_bit) * stride.r + (g >> cell_bit) * stride.g + (b >> cell_bit) * stride.b,
              lanes((r == white.r) & (g == white.g) & (b == white.b))};
    }
  };

  found look_up(const u8* src, u32 count) {
    for (u32 a = 0; a < 3; ++a) {
      const u8* from = src + samples_.r + std::ptrdiff_t(a) * samples_.step;
      const u32 bytes = samples_.pixel;
      const u8* const index = index_[a];
      const u32 *const slope = slope_[a], *const origin = origin_[a];
#pragma GCC unroll 4
      for (u32 i = 0; i < count; ++i, from += bytes) {
        const u32 level = rescale<in, work>(load_sample<sample_of<in>>(from)), cell = index[level];
        place_[a][i] = origin[cell] + level * slope[cell];
      }
    }
    return {place_, stride_, white_};
  }

 private:
  u32 place(u32 a, u32 level) const {
    const u32 cell = index_[a][level];
    return origin_[a][cell] + level * slope_[a][cell];
  }

  sample_places<in> samples_;
  const u8* index_[3];
  const u32* slope_[3];
  axis_words stride_, white_;
  u32 origin_[3][254];
  alignas(32) u32 place_[3][pixels] = {};  // behind a short block those of a longer one before
};

// Input of 8 bits has few enough levels to hold their places on all axes, such that the three of a pixel add up to its
// place in the grid, two words:
//   low   bits 0 to 23: number of the grid point in the cell's lowest corner; 24 and 25: how many axes are at full
//         scale; 28 to 31: lower bits of the fraction on the R axis
//   high  bits 0 to 7: its upper bits; 8 to 19 and 20 to 31: fractions on the G and B axes
template <int work, u32 stored>
class block_places<8, work, stored> {
  static constexpr int white_bit = 24;
  static constexpr u32 pixels = 40;
  static_assert(255 * 255 * 255 < 1 << white_bit && fraction_limit<work>() <= 1 << 12);

 public:
  static constexpr u32 most_pixels = pixels;

  explicit block_places(const color_grid& grid, u32 layout) : samples_(layout) {
    constexpr int fraction_places[] = {28, 40, 52};
    const u32 n = grid.grid_points, steps[] = {n * n, n, 1};
    for (u32 a = 0; a < 3; ++a) {
      const grid_axis_view<work> axis(grid, a, stored);
      for (u32 i = 0; i < 256; ++i) {
        const u32 level = rescale<8, work>(i), cell = axis.index[level];
        const u32 fraction = (level - axis.axis[cell]) * axis.recip[cell] >> precision<work>::frac_shift;
        place_of_[a][i] = u64{fraction} << fraction_places[a] | cell * steps[a];
      }
      place_of_[a][255] += 1u << white_bit;
    }
  }

  u32 bytes() const { return samples_.pixel; }

  struct found {
    const u64* place;

    pixel_places at(u32 i) const {
      lanes low, high;
      load_words(place + i, low, high);
      return {(low >> 8 & 0xF00000) | high << 24, high << 12 & ~stride_mask, high & ~stride_mask,
              (low & ((1u << white_bit) - 1)) * u32(stored * sizeof(sample_of<work>)),
              lanes((low & 3u << white_bit) == 3u << white_bit)};
    }
  };

  found look_up(const u8* src, u32 count) {
    const u8* r = src + samples_.r;
    const std::ptrdiff_t step = samples_.step;
    const u32 bytes = samples_.pixel;
#pragma GCC unroll 4
    for (u32 i = 0; i < count; ++i, r += bytes) {
      place_[i] = place_of_[0][r[0]] + place_of_[1][r[step]] + place_of_[2][r[2 * step]];
    }
    return {place_};
  }

 private:
  sample_places<8> samples_;
  u64 place_of_[3][256];
  alignas(32) u64 place_[pixels] = {};
};
