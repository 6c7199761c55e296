// Conversion of a run in blocks: included once by the file of every level above the base, inside the level's region and
// namespace, behind its vectors. A block takes three steps, loops without a branch: the places of its pixels on the
// axes are looked up; several pixels at a time get their axes in order, and with that their corners and weights; each
// pixel's corners are loaded, weighted and added.
//
// Gives what tetra_interpolation gives, for the reasons that bounded_interpolation gives.

#include "csc/block_corners.h"
#include "csc/block_places.h"

// Where the corners of a block's pixels are and what they weigh. The fourth corner stands at a constant distance from
// the first.
template <u32 most_pixels>
struct block_corners {
  alignas(32) u32 first[most_pixels], second[most_pixels], third[most_pixels];  // bytes from the first grid point
  alignas(32) u32 weights[2][most_pixels];  // four bytes in the first word, or four 16-bit numbers in both

  pixel_corners of(u32 pixel, const u8* points, u32 diagonal) const {
    const u8* const start = points + first[pixel];
    return {
        start, points + second[pixel], points + third[pixel], start + diagonal, &weights[0][pixel], &weights[1][pixel]};
  }
};

// The first two steps.
template <int in, int work, u32 stored>
class corner_finder {
  using places = block_places<in, work, stored>;

 public:
  static constexpr u32 most_pixels = places::most_pixels;

  __attribute__((noinline)) corner_finder(const color_grid& grid, u32 layout) : places_(grid, layout) {
    stride_ = strides_of<work>(grid, stored);
    diagonal_ = stride_.r + stride_.g + stride_.b;
    last_cell_ = (grid.grid_points - 2) * diagonal_;
  }

  u32 pixel_bytes() const { return places_.bytes(); }
  u32 diagonal() const { return diagonal_; }

  // They are most of the code: where several output widths share it, one copy serves them all.
  void find(const u8* src, u32 pixel_count, block_corners<most_pixels>& corners) {
    if constexpr (work == 8) {
      find_inline(src, pixel_count, corners);
    } else {
      find_shared(src, pixel_count, corners);
    }
  }

 private:
  __attribute__((noinline)) void find_shared(const u8* src, u32 pixel_count, block_corners<most_pixels>& corners) {
    find_inline(src, pixel_count, corners);
  }

  __attribute__((always_inline)) void find_inline(const u8* src, u32 pixel_count, block_corners<most_pixels>& corners) {
    constexpr u32 one = 1u << precision<work>::value_shift;
    const auto places = places_.look_up(src, pixel_count);
    const axis_words stride = stride_;
    const u32 diagonal = diagonal_, last_cell = last_cell_;
    for (u32 i = 0; i < pixel_count; i += lane_count) {
      // In the order of the fractions: the axes' strides in the lower bits tell which is which.
      const pixel_places at = places.at(i);
      const lanes r = at.r | stride.r, g = at.g | stride.g, b = at.b | stride.b;
      const lanes larger = max_lanes(g, b), smaller = min_lanes(g, b);
      const lanes first = max_lanes(r, larger), rest = min_lanes(r, larger);
      const lanes middle = max_lanes(rest, smaller), last = min_lanes(rest, smaller);

      // White goes to the highest corner of the last cell: all the weight is the fourth corner's.
      const lanes cell = select_lanes(at.white, last_cell, at.start);
      store_lanes(corners.first + i, cell);
      store_lanes(corners.second + i, cell + (first & stride_mask));
      store_lanes(corners.third + i, cell + diagonal - (last & stride_mask));
      const lanes f1 = first >> fraction_bit, f2 = middle >> fraction_bit, f3 = last >> fraction_bit;
      if constexpr (work == 8) {
        const lanes weights = (one - f1) | (f1 - f2) << 8 | (f2 - f3) << 16 | f3 << 24;
        store_lanes(corners.weights[0] + i, select_lanes(at.white, one << 24, weights));
      } else {
        const lanes weights = ((one - f1) & 0xFFFF) | (f1 - f2) << 16, more_weights = ((f2 - f3) & 0xFFFF) | f3 << 16;
        store_lanes(corners.weights[0] + i, select_lanes(at.white, 0, weights));
        store_lanes(corners.weights[1] + i, select_lanes(at.white, one << 16, more_weights));
      }
    }
  }

  axis_words stride_;
  u32 diagonal_;   // bytes from a cell's lowest corner to its highest
  u32 last_cell_;  // bytes from the first grid point to the last cell
  places places_;
};

// The third step. Up to three pixels more than asked for are written, and 16 bytes behind them.
template <int work, int out, u32 stored, u32 most_pixels>
__attribute__((always_inline)) inline void interpolate(const block_corners<most_pixels>& corners, const u8* points,
                                                       u32 diagonal, u32 pixel_count, u8* dst) {
  constexpr u32 pixel_bytes = stored * sizeof(sample_of<out>);
  for (u32 i = 0; i < pixel_count; i += 4, dst += 4 * pixel_bytes) {
    store_means<work, out, stored>(corners.of(i, points, diagonal), corners.of(i + 1, points, diagonal),
                                   corners.of(i + 2, points, diagonal), corners.of(i + 3, points, diagonal), dst);
  }
}

inline bool same_bytes(const u8* a, const u8* b) {  // 16 of them
  const __m128i x = _mm_loadu_si128(address_as<const __m128i>(a));
  const __m128i y = _mm_loadu_si128(address_as<const __m128i>(b));
  return _mm_movemask_epi8(_mm_cmpeq_epi8(x, y)) == 0xFFFF;
}

// Whether all pixels of a block are the same, as on blank paper. Of a short block it is not asked.
inline bool repeats(const u8* src, u32 bytes, u32 pixel_bytes) {
  if (bytes < pixel_bytes + 16) return false;
  const u32 last = bytes - pixel_bytes - 16;
  for (u32 at = 0; at < last; at += 16) {
    if (!same_bytes(src + at, src + at + pixel_bytes)) return false;
  }
  return same_bytes(src + last, src + last + pixel_bytes);
}

// Converts blocks; pixels of three input samples.
template <csc_widths W, u32 stored>
class block_converter {
  using finder = corner_finder<W.in, W.work, stored>;

 public:
  static constexpr u32 pixel_bytes = stored * sizeof(sample_of<W.out>), most_pixels = finder::most_pixels;

  block_converter(const color_grid& grid, u32 layout) : points_(grid.points.get()), finder_(grid, layout) {}

  // Converts up to most_pixels pixels, whose outputs then stand in out(), one behind the other. Returns where the next
  // pixel is.
  const u8* convert(const u8* src, u32 pixel_count) {
    const u32 bytes = pixel_count * finder_.pixel_bytes();
    const bool repeating = repeats(src, bytes, finder_.pixel_bytes());
    if (!repeating) {
      convert_each(src, pixel_count);
    } else if (const u64 color = load_sample<u64>(src); !repeated_ || color != repeated_color_) {
      repeated_color_ = color;
      convert_each(src, 1);
      for (u32 i = 1; i < most_pixels; ++i) std::memcpy(out_ + i * pixel_bytes, out_, pixel_bytes);
    }
    repeated_ = repeating;
    return src + bytes;
  }

  const u8* out() const { return out_; }

 private:
  void convert_each(const u8* src, u32 pixel_count) {
    block_corners<most_pixels> corners;
    finder_.find(src, pixel_count, corners);
    interpolate<W.work, W.out, stored>(corners, points_, finder_.diagonal(), pixel_count, out_);
  }

  const u8* points_;
  bool repeated_ = false;  // whether the block before was one colour
  u64 repeated_color_;     // its first pixel and what follows
  finder finder_;
  u8 out_[most_pixels * pixel_bytes + 16];
};

// Writes `bytes` of `most`, mostly all.
template <u32 most>
inline void write_outputs(const u8* out, u32 bytes, u8* dst) {
  if (bytes == most) {
    std::memcpy(dst, out, most);
  } else {
    std::memcpy(dst, out, bytes);
  }
}

// The outputs of a block, of four samples each, as pixels of three samples in either order.
template <int bits>
class rgb_packer {
  static constexpr u32 bytes = sizeof(sample_of<bits>);

 public:
  explicit rgb_packer(u32 layout) {
    const rgb_layout& l = rgb_layouts[layout < layout_count ? layout : 0];
    const u32 place[3] = {l.r, l.g, l.b};
    for (u32 i = 0; i < 16; ++i) {
      const u32 pixel = i / (3 * bytes), in_pixel = i % (3 * bytes);
      u32 channel = 0;
      while (place[channel] != in_pixel / bytes) ++channel;
      from_[i] = i < 12 ? u8((pixel * 4 + channel) * bytes + in_pixel % bytes) : 0x80;
    }
  }

  // As many bytes as pixels take in fours, and four more.
  void pack(const u8* from, u32 pixel_count, u8* to) const {
    const __m128i places = _mm_loadu_si128(address_as<const __m128i>(from_));
    for (u32 i = 0; 16 * i < pixel_count * 4 * bytes; ++i) {
      const __m128i pixels = _mm_loadu_si128(address_as<const __m128i>(from + 16 * i));
      store(to + 12 * i, _mm_shuffle_epi8(pixels, places));
    }
  }

 private:
  u8 from_[16];
};

template <csc_widths W>
void csc1_block_kernel(const csc1_handle& h, const u8* src, const u8* mask, u32 pixel_count, u8* dst) {
  using converter = block_converter<W, csc1_stored>;
  constexpr u32 packed_bytes = 3 * sizeof(sample_of<W.out>);
  const rgb_writer<W.out> write(h.layout);
  const bool packs = mask == nullptr && write.bytes() == packed_bytes;
  const rgb_packer<W.out> packer(packs ? h.layout : 0);
  converter block(h.grid, h.layout);
  for (u32 at = 0; at < pixel_count; at += converter::most_pixels) {
    const u32 count = std::min(pixel_count - at, converter::most_pixels);
    src = block.convert(src, count);
    if (packs) {
      u8 packed[converter::most_pixels * packed_bytes + 4];
      packer.pack(block.out(), count, packed);
      write_outputs<converter::most_pixels * packed_bytes>(packed, count * packed_bytes, dst);
      dst += count * packed_bytes;
      continue;
    }
    for (u32 i = 0; i < count; ++i, dst += write.bytes()) {
      out_pixel<W.out> out{};
      if (!is_masked(mask, at + i)) {
        std::memcpy(out.sample, block.out() + i * converter::pixel_bytes, converter::pixel_bytes);
      }
      write(dst, out);
    }
  }
}

template <csc_widths W, u32 inks>
void csc2_block_kernel(const csc2_handle& h, const u8* src, u32 pixel_count, u8* dst) {
  using converter = block_converter<W, inks>;
  converter block(h.grid, h.layout);
  for (u32 at = 0; at < pixel_count; at += converter::most_pixels) {
    const u32 count = std::min(pixel_count - at, converter::most_pixels);
    src = block.convert(src, count);
    write_outputs<converter::most_pixels * converter::pixel_bytes>(block.out(), count * converter::pixel_bytes, dst);
    dst += count * converter::pixel_bytes;
  }
}

template void csc1_block_kernel<all_csc_widths[0]>(const csc1_handle&, const u8*, const u8*, u32, u8*);
template void csc1_block_kernel<all_csc_widths[1]>(const csc1_handle&, const u8*, const u8*, u32, u8*);
template void csc1_block_kernel<all_csc_widths[2]>(const csc1_handle&, const u8*, const u8*, u32, u8*);
template void csc1_block_kernel<all_csc_widths[3]>(const csc1_handle&, const u8*, const u8*, u32, u8*);
template void csc1_block_kernel<all_csc_widths[4]>(const csc1_handle&, const u8*, const u8*, u32, u8*);
template void csc2_block_kernel<all_csc_widths[0], 4>(const csc2_handle&, const u8*, u32, u8*);
template void csc2_block_kernel<all_csc_widths[1], 4>(const csc2_handle&, const u8*, u32, u8*);
template void csc2_block_kernel<all_csc_widths[2], 4>(const csc2_handle&, const u8*, u32, u8*);
template void csc2_block_kernel<all_csc_widths[3], 4>(const csc2_handle&, const u8*, u32, u8*);
template void csc2_block_kernel<all_csc_widths[4], 4>(const csc2_handle&, const u8*, u32, u8*);
template void csc2_block_kernel<all_csc_widths[0], 6>(const csc2_handle&, const u8*, u32, u8*);
template void csc2_block_kernel<all_csc_widths[1], 6>(const csc2_handle&, const u8*, u32, u8*);
template void csc2_block_kernel<all_csc_widths[2], 6>(const csc2_handle&, const u8*, u32, u8*);
template void csc2_block_kernel<all_csc_widths[3], 6>(const csc2_handle&, const u8*, u32, u8*);
template void csc2_block_kernel<all_csc_widths[4], 6>(const csc2_handle&, const u8*, u32, u8*);
static_assert(all_csc_widths.size() == 5);
