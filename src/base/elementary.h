// Exponential and power for table building. Tables must come out the same on every build and machine, and every C
// run-time has its own last digit here (32-bit Windows' even depends on the caller's floating-point control word), so
// the library brings its own, of nothing but additions, multiplications and divisions of doubles.
#pragma once

#include <array>
#include <bit>
#include <numbers>

#include "base/integers.h"

namespace vrk {

constexpr auto inverse_factorial = [] {
  std::array<double, 14> table{1};
  for (std::size_t n = 1; n < table.size(); ++n) table[n] = table[n - 1] / double(n);
  return table;
}();

// e^x for x of -700 ... 700, to about a unit in the last place; 1 for 0.
constexpr double exp(double x) {
  constexpr double ln2_high = 0x1.62e42fee00000p-1, ln2_low = 0x1.a39ef35793c76p-33;  // k * ln2_high is exact
  const i32 k = i32(x * std::numbers::log2e + (x < 0 ? -0.5 : 0.5));
  const double r = x - k * ln2_high - k * ln2_low;  // e^x = 2^k e^r, |r| at most ln 2 / 2
  double sum = 0;
  for (int n = 13; n != -1; --n) sum = r * sum + inverse_factorial[std::size_t(n)];
  return sum * std::bit_cast<double>(u64(1023 + k) << 52);
}

// ln x for normal x above 0.
constexpr double log(double x) {
  const u64 bits = std::bit_cast<u64>(x);
  i32 k = i32(bits >> 52) - 1023;
  double m = std::bit_cast<double>((bits & 0x000FFFFFFFFFFFFF) | u64(1023) << 52);  // x = 2^k m
  if (m > std::numbers::sqrt2) {
    m /= 2;
    ++k;
  }
  const double s = (m - 1) / (m + 1);  // ln m = 2 (s + s^3 / 3 + s^5 / 5 + ...), |s| at most 0.172
  double sum = 0;
  for (int n = 21; n != -1; n -= 2) sum = 1.0 / n + s * s * sum;
  return k * std::numbers::ln2 + 2 * s * sum;
}

// x^y for x of 0 or a normal number up to 1 and y from 0; exact where x or y is 0 or x is 1.
constexpr double pow(double x, double y) { return y == 0 ? 1 : x == 0 ? 0 : exp(y * log(x)); }

static_assert(exp(0) == 1 && pow(1, 26.4) == 1 && pow(0, 0.2) == 0 && pow(0, 0) == 1);

}  // namespace vrk
