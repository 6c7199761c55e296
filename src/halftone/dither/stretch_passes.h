// The two passes of a stretch: included by the file of every level, inside the level's region and namespace, behind its
// vectors.

namespace {

// One step of bringing samples together: vectors of the first and of the second half, a byte of each in turn.
template <u32 planes>
inline void riffle(vec (&v)[planes]) {
  vec to[planes];
  for (u32 i = 0; i < planes / 2; ++i) {
    to[2 * i] = unpack_low(v[i], v[i + planes / 2]);
    to[2 * i + 1] = unpack_high(v[i], v[i + planes / 2]);
  }
  for (u32 i = 0; i < planes; ++i) v[i] = to[i];
}

// A step takes byte x of 16 pixels to 2 x, modulo their bytes less one; four take sample r of pixel p, which is at
// planes * p + r, to 16 r + p.
template <u32 planes>
inline void split_vectors(const u8* src, u8* samples) {
  vec v[planes];
  for (u32 i = 0; i < planes; ++i) v[i] = load_parts(src + 16 * i, 16 * planes);
  for (int step = 0; step < 4; ++step) riffle(v);
  for (u32 r = 0; r < planes; ++r) store(samples + r * stretch_pixels(planes), v[r]);
}

template <u32 planes>
inline void split_planes(const u8* src, u32 pixels, u8* samples) {
  for (; pixels >= vec_bytes; pixels -= vec_bytes, src += vec_bytes * planes, samples += vec_bytes) {
    split_vectors<planes>(src, samples);
  }
  if (pixels == 0) return;
  u8 rest[vec_bytes * planes]{};
  std::memcpy(rest, src, pixels * planes);
  split_vectors<planes>(rest, samples);
}

}  // namespace

void split_pixels(const u8* src, u32 planes, u32 pixels, u8* samples) {
  if (planes == 4) {
    split_planes<4>(src, pixels, samples);
  } else {
    split_planes<6>(src, pixels, samples);
  }
}

namespace {

// What is done at a time: 64 pixels.
constexpr u32 step_pixels = 64, step_vecs = step_pixels / vec_bytes;

// Rows are copied where they are shorter than a vector, so that one can be read from each of their columns on. Where
// there are many of them they are copied side by side: tables are often a power of two apart, and then a cache cannot
// hold the same row of all of them.
constexpr u32 row_copy_bytes = 160, many_intervals = 5;

inline bool copies_rows(const dither_stretch& at) {
  return at.width < vec_bytes || (at.intervals >= many_intervals && at.width + vec_bytes - 1 <= row_copy_bytes);
}

// Returns the width of the copies, a multiple of the matrix' width. Reads whole vectors, whatever stands behind a row.
inline u32 copy_rows(const dither_stretch& at, u8* rows) {
  const u32 width = (vec_bytes + at.width - 1) / at.width * at.width, end = width + vec_bytes - 1;
  const u32 repeat = 2 * at.width <= vec_bytes ? 2 * at.width : at.width;
  for (u32 j = 0; j < at.intervals; ++j, rows += row_copy_bytes) {
    const u8* const row = at.thresholds + j * at.table_bytes;
    if (at.width < vec_bytes) {
      for (u32 i = 0; i < end; i += repeat) store(rows + i, load(row));
    } else {
      for (u32 i = 0; i < end; i += vec_bytes) store(rows + i, load(row + i));
    }
  }
  return width;
}

// Where a stretch stands in the rows that its thresholds are read from.
struct threshold_place {
  const u8* row;    // of the first interval
  u32 table_bytes;  // to the next interval's
  u32 width, column;

  const u8* next() {
    const u8* const at = row + column;
    column += vec_bytes;
    if (column >= width) column -= width;
    return at;
  }
};

template <dither_packing packing>
inline void dither_step(const u8* samples, threshold_place& place, u32 intervals, u8* out) {
  vec sample[step_vecs], missed[step_vecs];  // missed: less one for each threshold that the sample is not above
  const u8* thresholds[step_vecs];
  for (u32 i = 0; i < step_vecs; ++i) {
    sample[i] = load(samples + i * vec_bytes);
    thresholds[i] = place.next();
    missed[i] = not_above(sample[i], load(thresholds[i]));
  }
  if constexpr (!packing.one_interval()) {
    u32 table = 0;
    for (u32 j = 1; j < intervals; ++j) {
      table += place.table_bytes;
      for (u32 i = 0; i < step_vecs; ++i) {
        missed[i] = add(missed[i], not_above(sample[i], load(thresholds[i] + table)));
      }
    }
    for (u32 i = 0; i < step_vecs; ++i) missed[i] = add(missed[i], all_bytes(u8(intervals)));
  }
  pack<packing>(missed, out);
}

}  // namespace

template <dither_packing packing>
void dither_stretch_of(const dither_stretch& at) {
  constexpr u32 most_intervals = (1u << packing.bits) - 1, step_bytes = step_pixels / 8 * packing.bits;
  u8 rows[most_intervals * row_copy_bytes];
  threshold_place place{at.thresholds, at.table_bytes, at.width, at.column};
  if (copies_rows(at)) place = {rows, row_copy_bytes, copy_rows(at, rows), at.column};

  const u8* samples = at.samples;
  u8* out = at.out;
  u32 left = at.pixels;
  for (; left >= step_pixels; left -= step_pixels, samples += step_pixels, out += step_bytes) {
    dither_step<packing>(samples, place, at.intervals, out);
  }
  if (left == 0) return;
  u8 rest[step_pixels]{}, packed[step_bytes];
  std::memcpy(rest, samples, left);
  dither_step<packing>(rest, place, at.intervals, packed);
  std::memcpy(out, packed, (left * packing.bits + 7) / 8);
}

template void dither_stretch_of<dither_packing{1, dither_merge::fits}>(const dither_stretch&);
template void dither_stretch_of<dither_packing{2, dither_merge::fits}>(const dither_stretch&);
template void dither_stretch_of<dither_packing{4, dither_merge::fits}>(const dither_stretch&);
template void dither_stretch_of<dither_packing{2, dither_merge::fits, k_code::low_first}>(const dither_stretch&);
template void dither_stretch_of<dither_packing{2, dither_merge::fits, k_code::high_first}>(const dither_stretch&);
