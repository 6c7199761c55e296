// Error diffusion as it is defined: every error kept in its line in memory, every neighbour added on its own, levels
// found by comparing with the thresholds, dots set one at a time. Shares nothing with the library but the plane order.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "kit/ed_tables.h"
#include "kit/planes.h"
#include "vrk.h"

namespace vrk::test {

using packed_lines = std::vector<kit::bytes>;  // as vrk_exec_edx takes them: all lines of K, then of C ...

class ed_reference {
 public:
  ed_reference(kit::edpr_table params, kit::edtb_table spread, unsigned width, unsigned flags)
      : params_(std::move(params)), spread_(std::move(spread)), width_(int(width)), flags_(flags) {
    if (flags_ & VRK_IN16) flags_ |= VRK_PREC10;
    const auto used = [&](std::size_t p) { return !params_.planes[p].level_values.empty(); };
    planes = used(4) && used(5) ? 6 : used(0) && used(1) && used(2) && used(3) ? 4 : 1;
    clear();
  }

  std::size_t planes;
  std::uint32_t random = 1;

  void clear() {
    for (auto& line : errors_) line.assign(planes, std::vector<std::int16_t>(std::size_t(width_) + 8));
  }
  void end() { keep(x_, block_width_); }
  bool start(unsigned block_width, unsigned x, unsigned line) {
    if (std::uint64_t(x) + block_width > std::uint64_t(width_)) return false;
    if (line == line_) keep(int(x), int(block_width));
    if (line != line_) clear();
    x_ = int(x), block_width_ = int(block_width), line_ = line;
    return true;
  }

  // samples: planes to a pixel, record order.
  packed_lines line(const std::vector<std::uint16_t>& samples) {
    const bool back = line_ % 2 == 1;
    std::vector<kit::bytes> levels(planes, kit::bytes(std::size_t(block_width_)));
    for (int step = 0; step < block_width_; ++step) {
      const std::size_t i = std::size_t(back ? block_width_ - 1 - step : step);
      for (std::size_t p = 0; p < planes; ++p) levels[p][i] = diffuse(p, x_ + int(i), samples[i * planes + p], back);
    }
    packed_lines out;
    for (std::size_t p = 0; p < planes; ++p) params_.extended() ? expand(p, levels[p], out) : pack(p, levels[p], out);
    ++line_;
    return out;
  }

 private:
  const kit::ed_plane& plane(std::size_t p) const { return params_.planes[kit::table_position[p]]; }
  bool prec10() const { return flags_ & VRK_PREC10; }
  int scaled(std::uint16_t v) const { return prec10() ? v : (v >> 2) & 255; }

  static unsigned tiled_column(unsigned x, unsigned width, unsigned shift) {
    return (x / width * shift + x % width) % width;
  }
  static unsigned tiled_row(unsigned y, unsigned height, unsigned shift) {
    return (y / height * shift + (y & (height - 1))) & (height - 1);
  }

  std::int16_t& error(unsigned line, std::size_t p, int x) { return errors_[line][p][std::size_t(x + 4)]; }

  void keep(int x, int count) {
    for (unsigned line = 0; line < 2; ++line) {
      for (std::size_t p = 0; p < planes; ++p) {
        for (int at = -4; at < width_ + 4; ++at) {
          if (at < x || at >= x + count) error(line, p, at) = 0;
        }
      }
    }
  }

  std::uint8_t diffuse(std::size_t p, int x, unsigned sample, bool back) {
    const int range = prec10() ? 1024 : 256, ahead = back ? -1 : 1;
    const unsigned here = back, next = 1 - here;
    const int e = error(here, p, x);
    if (sample == 0 && e == 0) return 0;
    const unsigned widened = flags_ & VRK_IN16 ? sample >> 6 : prec10() ? (sample << 2 | sample >> 6) : sample;
    const int value = int(widened) + e;

    const kit::edpr_table& t = params_;
    const unsigned row = tiled_row(line_, t.matrix_height, t.matrix_row_shift);
    const unsigned column = tiled_column(unsigned(x), t.matrix_width, t.matrix_column_shift);
    const int cell = plane(p).modulation[row * t.matrix_width + column];
    const int compared = std::clamp(value - (prec10() ? cell : cell / 4), -range, 2 * range - 1);
    const auto& thresholds = plane(p).thresholds;
    std::size_t level = 0;
    while (level < thresholds.size() && compared >= std::int16_t(scaled(thresholds[level]))) ++level;

    const int rest = std::clamp(value - scaled(plane(p).level_values[level]), -1024, 1023);
    const int last_row = int(spread_.rows.size()) - 1;
    const auto& amounts = spread_.rows[std::size_t(std::clamp((prec10() ? rest / 4 : rest) + 255, 0, last_row))];
    const auto add = [&](unsigned line, int to, int amount) {
      error(line, p, to) = std::int16_t(error(line, p, to) + amount);
    };
    const int scale = prec10() ? 4 : 1;
    error(here, p, x) = 0;
    add(here, x + ahead, amounts[0] * scale);
    add(here, x + 2 * ahead, amounts[1] * scale);
    add(next, x - 2 * ahead, amounts[2] * scale);
    add(next, x - ahead, amounts[3] * scale);
    add(next, x, amounts[4] * scale);
    if (prec10()) {
      add(here, x + 3 * ahead, rest % 4 - rest % 2);
      add(here, x + 4 * ahead, rest % 2);
    }
    return std::uint8_t(level);
  }

  unsigned draw() {
    random = random * 214013 + 2531011;
    return random >> 16 & 0x7FFF;
  }

  unsigned code(std::size_t p, unsigned level) {
    const std::size_t count = plane(p).level_values.size();
    if (p == 0 && (flags_ & VRK_K_CODE3) && count == 3) return level == 0 ? 0 : level + 1;
    if (!(flags_ & VRK_RANDOM4) || plane(p).bits != 4 || (count != 5 && count != 6)) return level;
    if (level == 1 && count == 5) return std::vector{1u, 5u, 6u, 7u}[draw() & 3];
    if (level == 1) return std::vector{1u, 6u, 7u}[draw() % 3];
    return level == 2 && (draw() & 1) ? 8 : level;
  }

  void pack(std::size_t p, const kit::bytes& levels, packed_lines& out) {
    const std::size_t bits = plane(p).bits;
    kit::bytes line((bits * levels.size() + 7) / 8);
    for (std::size_t i = 0; i < levels.size() && (bits == 1 || bits == 2 || bits == 4); ++i) {
      const std::size_t at = bits * i;
      line[at / 8] = std::uint8_t(line[at / 8] | code(p, levels[i]) << (8 - bits - at % 8));
    }
    out.push_back(line);
  }

  bool level_0_is_blank() const {
    for (std::size_t p = 1; p < planes; ++p) {
      if (plane(p).scale_x != plane(0).scale_x || plane(p).scale_y != plane(0).scale_y) return false;
    }
    return planes > 1;
  }

  void expand(std::size_t p, const kit::bytes& levels, packed_lines& out) const {
    const kit::edpr_table& t = params_;
    const std::size_t across = plane(p).scale_x;
    const unsigned row = tiled_row(line_, t.pattern_height, t.pattern_row_shift);
    for (unsigned y = 0; y < plane(p).scale_y; ++y) {
      kit::bytes line((across * levels.size() + 7) / 8);
      for (std::size_t dot = 0; dot < across * levels.size(); ++dot) {
        const std::size_t i = dot / across;
        const unsigned column = tiled_column(unsigned(x_) + unsigned(i), t.pattern_width, t.pattern_column_shift);
        const unsigned cell = plane(p).patterns[levels[i]][row * t.pattern_width + column];
        const bool set = cell >> (15 - 4 * y - dot % across) & 1;
        if (set && (levels[i] != 0 || !level_0_is_blank()))
          line[dot / 8] = std::uint8_t(line[dot / 8] | 0x80 >> dot % 8);
      }
      out.push_back(line);
    }
  }

  kit::edpr_table params_;
  kit::edtb_table spread_;
  int width_, x_ = 0, block_width_ = 0;
  unsigned flags_, line_ = 0;
  std::vector<std::vector<std::int16_t>> errors_[2];  // even and odd lines, per plane, column + 4
};

}  // namespace vrk::test
