// Error diffusion as it is defined: every error in its line in memory, every neighbour added on its own, levels found
// by comparing with the thresholds, codes and dots placed one at a time. Shares nothing with the library's kernels.
#pragma once

#include <algorithm>
#include <vector>

#include "base/integers.h"
#include "kit/ed_tables.h"
#include "kit/planes.h"
#include "tests/samples.h"
#include "vrk.h"

namespace vrk::test {

struct ed_tables {
  kit::edpr_table params;
  kit::edtb_table distribution;
};

// The generator's state, of the calling thread.
inline u32& random_state() {
  thread_local u32 state = 1;
  return state;
}

class ed_reference {
 public:
  ed_reference(const ed_tables& t, unsigned width, unsigned flags)
      : t_(t.params), distribution_(t.distribution.rows), width_(int(width)), flags_(flags), prec10_(flags & 0x11) {
    const auto used = [&](std::size_t slot) { return !t_.planes[slot].level_values.empty(); };
    planes_ = used(4) && used(5) ? 6 : used(0) && used(1) && used(2) && used(3) ? 4 : used(3) ? 1 : 0;
    clear();
  }

  std::size_t planes() const { return planes_; }
  void clear() {
    for (auto& line : error_) line.assign(planes_ * std::size_t(width_ + 8), 0);
  }
  void end() { keep(x_, block_width_); }
  bool start(unsigned block_width, unsigned x, unsigned line) {
    if (u64(x) + block_width > u64(width_)) return false;
    line == line_ ? keep(int(x), int(block_width)) : clear();
    x_ = int(x), block_width_ = int(block_width), line_ = line;
    return true;
  }

  lines line(const samples& src) {
    levels_.assign(planes_, kit::bytes(std::size_t(block_width_)));
    for (int step = 0; step < block_width_; ++step) {
      const std::size_t i = std::size_t(line_ % 2 == 0 ? step : block_width_ - 1 - step);
      for (std::size_t p = 0; p < planes_; ++p) levels_[p][i] = diffuse(p, x_ + int(i), src[i * planes_ + p]);
    }
    lines out;
    for (std::size_t p = 0; p < planes_; ++p) t_.extended() ? expand(p, levels_[p], out) : pack(p, levels_[p], out);
    ++line_;
    return out;
  }
  const lines& levels() const { return levels_; }  // of the last line, plane by plane

 private:
  const kit::ed_plane& plane(std::size_t p) const { return t_.planes[kit::table_position[p]]; }
  int scaled(u16 value) const { return prec10_ ? value : (value >> 2) & 255; }
  i16& error(unsigned line, std::size_t p, int x) {
    return error_[line % 2][p * std::size_t(width_ + 8) + std::size_t(x + 4)];
  }

  void keep(int x, int count) {
    for (int at = -4; at < width_ + 4; ++at) {
      if (at >= x && at < x + count) continue;
      for (std::size_t p = 0; p < planes_; ++p) error(0, p, at) = error(1, p, at) = 0;
    }
  }

  static unsigned tile_entry(unsigned x, unsigned y, unsigned w, unsigned h, unsigned x_shift, unsigned y_shift) {
    return (((y / h) * y_shift + (y & (h - 1))) & (h - 1)) * w + ((x / w) * x_shift + x % w) % w;
  }

  u8 diffuse(std::size_t p, int x, unsigned sample) {
    const int e = error(line_, p, x), range = prec10_ ? 1024 : 256;
    if (sample == 0 && e == 0) return 0;
    const int value = e + int((flags_ & VRK_IN16) ? sample >> 6 : prec10_ ? sample << 2 | sample >> 6 : sample);

    const int modulation = plane(p).modulation[tile_entry(unsigned(x), line_, t_.matrix_width, t_.matrix_height,
                                                          t_.matrix_column_shift, t_.matrix_row_shift)];
    const int compared = std::clamp(value - (prec10_ ? modulation : modulation / 4), -range, 2 * range - 1);
    const auto& thresholds = plane(p).thresholds;
    std::size_t level = 0;
    while (level < thresholds.size() && compared >= i16(scaled(thresholds[level]))) ++level;

    const int quantisation_error = std::clamp(value - scaled(plane(p).level_values[level]), -1024, 1023);
    const int row =
        std::clamp((prec10_ ? quantisation_error / 4 : quantisation_error) + 255, 0, int(distribution_.size()) - 1);
    const auto add = [&](unsigned line, int columns_ahead, int amount) {
      i16& entry = error(line, p, line_ % 2 == 0 ? x + columns_ahead : x - columns_ahead);
      entry = i16(entry + amount);
    };
    const auto share = [&](std::size_t column) { return distribution_[std::size_t(row)][column] * (prec10_ ? 4 : 1); };
    error(line_, p, x) = 0;
    add(line_, 1, share(0));
    add(line_, 2, share(1));
    add(line_ + 1, -2, share(2));
    add(line_ + 1, -1, share(3));
    add(line_ + 1, 0, share(4));
    if (prec10_) add(line_, 3, quantisation_error % 4 - quantisation_error % 2), add(line_, 4, quantisation_error % 2);
    return u8(level);
  }

  static unsigned draw() {
    u32& state = random_state();
    return (state = state * 214013 + 2531011) >> 16 & 0x7FFF;
  }

  unsigned code(std::size_t p, unsigned level) {
    const std::size_t levels = plane(p).level_values.size();
    if (p == 0 && (flags_ & VRK_K_CODE3) && levels == 3) return level == 0 ? 0 : level + 1;
    if (!(flags_ & VRK_RANDOM4) || plane(p).bits != 4 || (levels != 5 && levels != 6)) return level;
    if (level == 1) return levels == 5 ? std::vector{1u, 5u, 6u, 7u}[draw() & 3] : std::vector{1u, 6u, 7u}[draw() % 3];
    return level == 2 && (draw() & 1) ? 8 : level;
  }

  void pack(std::size_t p, const kit::bytes& levels, lines& out) {
    const std::size_t bits = plane(p).bits;
    kit::bytes& line = out.emplace_back((bits * levels.size() + 7) / 8);
    for (std::size_t at = 0; at < bits * levels.size() && (bits == 1 || bits == 2 || bits == 4); at += bits) {
      line[at / 8] = u8(line[at / 8] | code(p, levels[at / bits]) << (8 - bits - at % 8));
    }
  }

  // Planes of one scale leave pixels of level 0 blank; otherwise, and for one plane, level 0 has a pattern like any
  // other.
  bool blank(unsigned level) const {
    const auto like_k = [&](const auto& p) { return p.scale_x == plane(0).scale_x && p.scale_y == plane(0).scale_y; };
    return level == 0 && planes_ > 1 && std::all_of(t_.planes.begin(), t_.planes.begin() + int(planes_), like_k);
  }

  void expand(std::size_t p, const kit::bytes& levels, lines& out) const {
    const std::size_t across = plane(p).scale_x;
    for (unsigned y = 0; y < plane(p).scale_y; ++y) {
      kit::bytes& line = out.emplace_back((across * levels.size() + 7) / 8);
      for (std::size_t dot = 0; dot < across * levels.size(); ++dot) {
        const std::size_t i = dot / across;
        const unsigned dots =
            plane(p).patterns[levels[i]][tile_entry(unsigned(x_) + unsigned(i), line_, t_.pattern_width,
                                                    t_.pattern_height, t_.pattern_column_shift, t_.pattern_row_shift)];
        const bool set = (dots >> (15 - 4 * y - dot % across) & 1) && !blank(levels[i]);
        line[dot / 8] = u8(line[dot / 8] | (set ? 0x80 >> dot % 8 : 0));
      }
    }
  }

  kit::edpr_table t_;
  std::vector<kit::edtb_row> distribution_;
  int width_, x_ = 0, block_width_ = 0;
  unsigned flags_, line_ = 0;
  bool prec10_;
  std::size_t planes_;
  lines levels_;
  std::vector<i16> error_[2];  // lines of even and odd number: planes of width + 8 columns from -4
};

}  // namespace vrk::test
