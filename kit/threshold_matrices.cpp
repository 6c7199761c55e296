#include "kit/threshold_matrices.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <random>
#include <string>
#include <tuple>
#include <utility>

namespace vrk::kit {
namespace {

// The tile of the void-and-cluster method: which pixels have dots, and the density of dots around each pixel.
class binary_tile {
 public:
  static constexpr int size = 64, pixels = size * size;

  bool on(int at) const { return on_[std::size_t(at)]; }

  void set(int at, bool on) {
    on_[std::size_t(at)] = on;
    for (int dy = -reach; dy <= reach; ++dy) {
      for (int dx = -reach; dx <= reach; ++dx) {
        const int x = (at + dx) & (size - 1), y = (at / size + dy) & (size - 1);
        const int weight = weights_[std::size_t(dy + reach)][std::size_t(dx + reach)];
        crowding_[std::size_t(y * size + x)] += on ? weight : -weight;
      }
      clusters_.note((at / size + dy) & (size - 1), at & (size - 1), on);
      voids_.note((at / size + dy) & (size - 1), at & (size - 1), !on);
    }
  }

  // The pixel with a dot in the densest place; the pixel without a dot in the least dense one. Of equals the first.
  int tightest_cluster() {
    return clusters_.find([this](int at) { return on(at); },
                          [this](int a, int b) { return crowding(a) > crowding(b); });
  }
  int largest_void() {
    return voids_.find([this](int at) { return !on(at); }, [this](int a, int b) { return crowding(a) < crowding(b); });
  }

 private:
  // The best pixel of each row, which is looked for again when another one may be.
  class row_search {
   public:
    // Pixels around this column have become better or worse. While others only become worse, the best one stays so.
    void note(int row, int column, bool better) {
      const int right = (best_[std::size_t(row)] - column + reach) & (size - 1);  // from the first of them
      if (better || right <= 2 * reach) known_[std::size_t(row)] = false;
    }

    template <class Counts, class Better>
    int find(const Counts& counts, const Better& better) {
      int found = -1;
      for (int row = 0; row < size; ++row) {
        int& best = best_[std::size_t(row)];
        if (!std::exchange(known_[std::size_t(row)], true)) {
          best = -1;
          for (int at = row * size; at < (row + 1) * size; ++at) {
            if (counts(at) && (best < 0 || better(at, best))) best = at;
          }
        }
        if (best >= 0 && (found < 0 || better(best, found))) found = best;
      }
      return found;
    }

   private:
    std::array<int, size> best_{};
    std::array<bool, size> known_{};
  };

  static constexpr int reach = 8;  // beyond it a weight is below 2^24 / 10^6

  // A Gaussian of sigma 1.5 pixels in whole numbers, so that sums do not depend on the order of addition.
  static std::array<std::array<int, 2 * reach + 1>, 2 * reach + 1> make_weights() {
    std::array<std::array<int, 2 * reach + 1>, 2 * reach + 1> weights{};
    for (int dy = -reach; dy <= reach; ++dy) {
      for (int dx = -reach; dx <= reach; ++dx) {
        const double weight = std::exp(-(dx * dx + dy * dy) / (2 * 1.5 * 1.5));
        weights[std::size_t(dy + reach)][std::size_t(dx + reach)] = int(std::lround(weight * (1 << 24)));
      }
    }
    return weights;
  }

  int crowding(int at) const { return crowding_[std::size_t(at)]; }

  std::array<std::array<int, 2 * reach + 1>, 2 * reach + 1> weights_ = make_weights();
  std::array<bool, pixels> on_{};
  std::array<int, pixels> crowding_{};
  row_search clusters_, voids_;
};

threshold_matrix void_and_cluster() {
  // Dots on a tenth of the pixels, at random; then each is moved from the tightest cluster into the largest void until
  // none moves any more.
  binary_tile prototype;
  std::minstd_rand random;
  int count = 0;
  while (count < binary_tile::pixels / 10) {
    const int at = int(random() % binary_tile::pixels);
    if (prototype.on(at)) continue;
    prototype.set(at, true);
    ++count;
  }
  for (;;) {
    const int cluster = prototype.tightest_cluster();
    prototype.set(cluster, false);
    const int gap = prototype.largest_void();
    prototype.set(gap, true);
    if (gap == cluster) break;
  }

  threshold_matrix matrix{binary_tile::size, binary_tile::size, {}};
  matrix.ranks.resize(binary_tile::pixels);
  const auto give_rank = [&](int at, int rank) { matrix.ranks[std::size_t(at)] = std::uint16_t(rank); };
  binary_tile tile = prototype;
  for (int rank = count - 1; rank >= 0; --rank) {
    const int at = tile.tightest_cluster();
    tile.set(at, false);
    give_rank(at, rank);
  }
  // Above one half the method takes the tightest cluster of pixels without dots. The weights of pixels with and without
  // dots add up to a constant, so that is the largest void as well.
  tile = prototype;
  for (int rank = count; rank < binary_tile::pixels; ++rank) {
    const int at = tile.largest_void();
    tile.set(at, true);
    give_rank(at, rank);
  }
  return matrix;
}

}  // namespace

threshold_matrix bayer(unsigned size) {
  threshold_matrix matrix{1, 1, {0}};
  while (matrix.width < size) {
    const unsigned n = matrix.width;
    threshold_matrix next{2 * n, 2 * n, std::vector<std::uint16_t>(4 * n * n)};
    constexpr unsigned quarter[2][2] = {{0, 2}, {3, 1}};
    for (unsigned y = 0; y < 2 * n; ++y) {
      for (unsigned x = 0; x < 2 * n; ++x) {
        next.ranks[y * 2 * n + x] = std::uint16_t(4 * matrix.ranks[y % n * n + x % n] + quarter[y / n][x / n]);
      }
    }
    matrix = std::move(next);
  }
  return matrix;
}

threshold_matrix clustered_dot(unsigned along, unsigned across) {
  const unsigned area = along * along + across * across;  // pixels of a dot's cell
  unsigned size = area / std::gcd(along, across);         // of the smallest tile; few ranks would be few tones
  while (size * size < 256) size *= 2;
  struct pixel {
    int spot;            // order within its dot
    unsigned place;      // within the lattice cell
    std::uint16_t cell;  // order among pixels of the same place: that of blue noise, which shows no pattern
    unsigned at;
  };
  const threshold_matrix& noise = blue_noise();
  std::vector<pixel> pixels;
  for (unsigned y = 0; y < size; ++y) {
    for (unsigned x = 0; x < size; ++x) {
      // Position within the cell along its two sides, in units of 1 / area.
      const unsigned u = (along * x + across * y) % area;
      const unsigned v = (along * y + (area - across) * x) % area;
      const double turn = 2 * std::numbers::pi / area;
      const int spot = int(std::lround(-(std::cos(turn * u) + std::cos(turn * v)) * (1 << 20)));
      pixels.push_back({spot, u * area + v, noise.ranks[y % 64 * 64 + x % 64], y * size + x});
    }
  }
  std::sort(pixels.begin(), pixels.end(), [](const pixel& a, const pixel& b) {
    return std::tie(a.spot, a.place, a.cell, a.at) < std::tie(b.spot, b.place, b.cell, b.at);
  });
  threshold_matrix matrix{size, size, std::vector<std::uint16_t>(pixels.size())};
  for (std::size_t rank = 0; rank < pixels.size(); ++rank) matrix.ranks[pixels[rank].at] = std::uint16_t(rank);
  return matrix;
}

const threshold_matrix& blue_noise() {
  static const threshold_matrix matrix = void_and_cluster();
  return matrix;
}

threshold_matrix shifted(const threshold_matrix& matrix, unsigned right, unsigned down) {
  const auto [width, height] = std::tie(matrix.width, matrix.height);
  threshold_matrix moved = matrix;
  for (unsigned y = 0; y < height; ++y) {
    for (unsigned x = 0; x < width; ++x) {
      moved.ranks[(y + down) % height * width + (x + right) % width] = matrix.ranks[y * width + x];
    }
  }
  return moved;
}

matrix_set plane_matrices(std::string_view name) {
  struct offset {
    unsigned right, down;
  };
  const auto offsets_of = [](const threshold_matrix& matrix, const std::array<offset, 6>& offsets) {
    matrix_set set;
    for (std::size_t p = 0; p < set.size(); ++p) set[p] = shifted(matrix, offsets[p].right, offsets[p].down);
    return set;
  };
  if (name == "blue-noise") {
    return offsets_of(blue_noise(), {{{0, 0}, {23, 37}, {41, 11}, {11, 53}, {53, 29}, {31, 5}}});
  }
  if (name == "clustered") {  // shifts: none, to the middle of four dots, and to places between these
    return offsets_of(clustered_dot(4, 4), {{{0, 0}, {4, 0}, {2, 2}, {2, 6}, {1, 5}, {3, 1}}});
  }
  if (name == "screens") {  // light inks take the angle of the other full ink
    const threshold_matrix cyan = clustered_dot(7, 2), magenta = clustered_dot(2, 7);
    return {clustered_dot(5, 5), cyan, magenta, clustered_dot(7, 0), shifted(magenta, 3, 3), shifted(cyan, 3, 3)};
  }
  for (const unsigned size : {2u, 4u, 8u, 16u}) {  // the first quarter of the dots differs in place for K, C, M, Y
    if (name != "bayer" + std::to_string(size)) continue;
    return offsets_of(bayer(size), {{{0, 0}, {1, 1}, {1, 0}, {0, 1}, {size / 2, 0}, {0, size / 2}}});
  }
  return {};
}

}  // namespace vrk::kit
