// Looks for shares of an error filter whose dots are the least noisy in photographs and show no lines. The method is
// the evolution strategy of N. Hansen, The CMA evolution strategy: a comparing review (2006), as pagmo has it.
#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdio>
#include <pagmo/algorithm.hpp>
#include <pagmo/algorithms/cmaes.hpp>
#include <pagmo/population.hpp>
#include <pagmo/problem.hpp>

#include "kit/error_filters.h"
#include "kit/presets.h"
#include "kit/search/judge.h"

namespace vrk::search {
namespace {

constexpr int sizes[] = {0, 32, 64, 96, 128, 192};  // of errors that have shares of their own
constexpr int divisor = 1000;
constexpr std::size_t free_shares = 4;  // of five that add up to the divisor

// Shares of the first four neighbours for every size, as parts of one.
using point = pagmo::vector_double;

std::array<int, 5> shares_at(const point& of, std::size_t size) {
  std::array<int, 5> shares{};
  shares[free_shares] = divisor;
  for (std::size_t i = 0; i < free_shares; ++i) {
    shares[i] = int(std::lround(of[size * free_shares + i] * divisor));
    shares[free_shares] -= shares[i];
  }
  return shares;
}

tables tables_of(const point& of) {
  std::vector<kit::shares_from> larger;
  for (std::size_t s = 1; s < std::size(sizes); ++s) larger.push_back({sizes[s], shares_at(of, s)});
  larger.push_back(kit::smooth_shares.back());
  const kit::error_filter filter{"", shares_at(of, 0), divisor, "", false, larger};
  return {kit::distribution_table(filter), kit::strong_noise_for(2)};
}

// A filter of the kit: the exact shares of those sizes are what its table gives to an error of that size.
point point_of(const kit::error_filter& filter) {
  point shares;
  const auto add = [&](const std::array<int, 5>& from) {
    for (std::size_t i = 0; i < free_shares; ++i) shares.push_back(double(from[i]) / filter.divisor);
  };
  add(filter.shares);
  for (std::size_t s = 1; s < std::size(sizes); ++s) {
    const auto at = std::find_if(filter.larger.begin(), filter.larger.end(),
                                 [&](const kit::shares_from& of) { return of.error == sizes[s]; });
    add(at == filter.larger.end() ? filter.shares : at->shares);
  }
  return shares;
}

void show(const point& best, const judge::score& s, double cost) {
  std::printf(
      "cost %.4f: noise %.3f fine, %.3f coarse; colour %.3f, lightness %.3f, chroma %.3f; lines %.2f, worst %.2f\n",
      cost, s.fine, s.coarse, s.difference, s.lightness, s.chroma, s.lines, s.worst_lines);
  for (std::size_t i = 0; i < std::size(sizes); ++i) {
    const auto shares = shares_at(best, i);
    std::printf("  {%d, {%d, %d, %d, %d, %d}},\n", sizes[i], shares[0], shares[1], shares[2], shares[3], shares[4]);
  }
  std::fflush(stdout);
}

// What pagmo minimises. Prints every point that is better than all before.
class problem {
 public:
  problem() = default;
  problem(const judge& by, const figures& before) : judge_(&by), before_(&before) {}

  point fitness(const point& at) const {
    const judge::score score = judge::compare(judge_->measure(tables_of(at)), *before_);
    const double cost = score.cost();
    if (cost < best_) show(at, score, best_ = cost);
    return {cost};
  }
  std::pair<point, point> get_bounds() const {
    const std::size_t n = std::size(sizes) * free_shares;
    return {point(n, -1.5), point(n, 1.5)};
  }

 private:
  const judge* judge_ = nullptr;
  const figures* before_ = nullptr;
  mutable double best_ = 1e9;
};

void search(const std::vector<std::string>& photographs, const std::string& from, unsigned seed, unsigned generations,
            double step) {
  const judge by(photographs);
  const figures before = by.measure({kit::ed_distribution("fan"), kit::fine_noise_for(2)});
  constexpr unsigned candidates = 14;
  pagmo::population population(pagmo::problem(problem(by, before)), 0, seed);
  const point start = point_of(*kit::find_error_filter(from));
  population.push_back(start);
  std::mt19937 random(seed);
  std::normal_distribution<double> away(0, step);
  while (population.size() < candidates) {
    point near = start;
    for (double& share : near) share += away(random);
    population.push_back(near);
  }
  pagmo::algorithm(pagmo::cmaes(generations, -1, -1, -1, -1, step, 1e-6, 1e-6, false, false, seed)).evolve(population);
}

}  // namespace
}  // namespace vrk::search

int main(int argc, char** argv) {
  CLI::App app("Looks for error filters with little visible noise; prints every one that is better than those before");
  std::vector<std::string> photographs;
  std::string from = "smooth";
  unsigned seed = 1, generations = 100;
  double step = 0.02;
  app.add_option("photographs", photographs, "pictures that the dots are judged by")->required();
  app.add_option("--from", from, "filter of the kit to begin with")
      ->capture_default_str()
      ->check([](const std::string& name) {
        return vrk::kit::find_error_filter(name) == nullptr ? "no filter of the kit is called " + name : std::string();
      });
  app.add_option("--seed", seed, "the same seed gives the same search")->capture_default_str();
  app.add_option("--generations", generations, "of 14 filters each")->capture_default_str();
  app.add_option("--step", step, "how far the first filters are from the one to begin with")->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  try {
    vrk::search::search(photographs, from, seed, generations, step);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vrk_search: %s\n", error.what());
    return 1;
  }
}
