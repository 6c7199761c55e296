#include "kit/dot_patterns.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>
#include <random>

#include "kit/level_sets.h"
#include "kit/threshold_matrices.h"

namespace vrk::kit {
namespace {

constexpr unsigned dot_bit(unsigned x, unsigned y) { return 0x8000u >> (4 * y + x); }

// A torus of dots with the Gaussians of those that are set.
class crowd {
 public:
  crowd(unsigned width, unsigned height) : width_(width), height_(height), density_(std::size_t{width} * height) {
    constexpr double sigma = 2;  // dots: what an eye just sees at 600 dpi
    for (int y = -reach; y <= reach; ++y) {
      for (int x = -reach; x <= reach; ++x) gaussian_.push_back(std::exp(-(x * x + y * y) / (2 * sigma * sigma)));
    }
  }
  double at(unsigned x, unsigned y) const { return density_[std::size_t{y} * width_ + x]; }

  // sign: 1 sets a dot, -1 takes it away.
  void add(unsigned x, unsigned y, double sign) {
    auto part = gaussian_.begin();
    for (unsigned v = 0; v <= 2 * reach; ++v) {
      double* const row = &density_[std::size_t{(y + height_ + v - reach) % height_} * width_];
      for (unsigned u = 0; u <= 2 * reach; ++u) row[(x + width_ + u - reach) % width_] += sign * *part++;
    }
  }

 private:
  static constexpr int reach = 6;
  unsigned width_, height_;
  std::vector<double> density_, gaussian_;
};

// The cells of a tile in order of blue noise, by which planes differ.
std::vector<unsigned> cell_order(unsigned side, unsigned plane) {
  static const matrix_set noise = plane_matrices("blue-noise");
  const threshold_matrix& matrix = noise[plane];
  std::vector<unsigned> order(std::size_t{side} * side);
  std::iota(order.begin(), order.end(), 0u);
  const auto rank = [&](unsigned at) {
    return matrix.ranks[at / side % matrix.height * matrix.width + at % side % matrix.width];
  };
  std::stable_sort(order.begin(), order.end(), [&](unsigned a, unsigned b) { return rank(a) < rank(b); });
  return order;
}

}  // namespace

dot_cells centred_dots(unsigned scale_x, unsigned scale_y, unsigned levels) {
  struct dot {
    int distance;  // from the centre, squared, in half dots
    std::uint16_t bit;
  };
  std::vector<dot> order;
  for (int y = 0; y < int(scale_y); ++y) {
    for (int x = 0; x < int(scale_x); ++x) {
      const int dx = 2 * x + 1 - int(scale_x), dy = 2 * y + 1 - int(scale_y);
      order.push_back({dx * dx + dy * dy, std::uint16_t(dot_bit(unsigned(x), unsigned(y)))});
    }
  }
  std::stable_sort(order.begin(), order.end(), [](const dot& a, const dot& b) { return a.distance < b.distance; });

  dot_cells result;
  const unsigned dots = unsigned(order.size());
  result.dots = even_levels(levels, dots);
  for (const unsigned count : result.dots) {
    unsigned cell = 0;
    for (unsigned i = 0; i < count; ++i) cell |= order[i].bit;
    result.cells.push_back(std::uint16_t(cell));
    result.level_values.push_back(std::uint16_t((1023 * count + dots / 2) / dots));
  }
  return result;
}

cell_tile spread_dots(unsigned scale_x, unsigned scale_y, const std::vector<std::uint16_t>& dots, unsigned plane) {
  constexpr unsigned tile_dots = 64, rounds = 2;  // the second moves dots away from those that came after them
  const unsigned side = std::bit_floor(tile_dots / std::max(scale_x, scale_y)), places = scale_x * scale_y;
  const std::vector<unsigned> order = cell_order(side, plane);
  crowd all(side * scale_x, side * scale_y);
  std::minstd_rand random(plane + 1);  // among places that are alike
  std::vector<std::uint16_t> cells(order.size());
  cell_tile tile{side, side, {}};
  for (unsigned count = 0;; ++count) {
    for (const std::uint16_t of_level : dots) {
      if (of_level == count) tile.levels.push_back(cells);
    }
    if (count == places) return tile;
    std::vector<unsigned> last(order.size(), places);  // the dot that this round sets in each cell; none yet
    for (unsigned round = 0; round < rounds; ++round) {
      for (const unsigned cell : order) {
        const auto x_of = [&](unsigned place) { return cell % side * scale_x + place % scale_x; };
        const auto y_of = [&](unsigned place) { return cell / side * scale_y + place / scale_x; };
        const auto bit_of = [&](unsigned place) { return dot_bit(place % scale_x, place / scale_x); };
        if (unsigned& old = last[cell]; old != places) {
          all.add(x_of(old), y_of(old), -1);
          cells[cell] = std::uint16_t(cells[cell] ^ bit_of(old));
        }
        unsigned best = places;
        const unsigned first = unsigned(random() >> 8) % places;
        for (unsigned i = 0; i < places; ++i) {
          const unsigned place = (first + i) % places;
          if ((cells[cell] & bit_of(place)) != 0) continue;
          constexpr double alike = 1e-9;
          if (best == places || all.at(x_of(place), y_of(place)) < all.at(x_of(best), y_of(best)) - alike) best = place;
        }
        last[cell] = best;
        all.add(x_of(best), y_of(best), 1);
        cells[cell] = std::uint16_t(cells[cell] | bit_of(best));
      }
    }
  }
}

}  // namespace vrk::kit
