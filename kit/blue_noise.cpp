#include "kit/blue_noise.h"

#include <array>
#include <cmath>
#include <random>
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

const threshold_matrix& blue_noise() {
  static const threshold_matrix matrix = void_and_cluster();
  return matrix;
}

matrix_set shifted_blue_noise() {
  constexpr std::array<std::array<unsigned, 2>, 6> shifts{{{0, 0}, {23, 37}, {41, 11}, {11, 53}, {53, 29}, {31, 5}}};
  matrix_set set;
  for (std::size_t p = 0; p < set.size(); ++p) set[p] = shifted(blue_noise(), shifts[p][0], shifts[p][1]);
  return set;
}

}  // namespace vrk::kit
