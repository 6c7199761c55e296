#include "tools/review/measure/filter.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <kissfft/kissfft.hh>
#include <numbers>

namespace vrk::tool {
namespace {

using complex = std::complex<float>;

// The next length that the transform is quick for: no prime factor above 5.
unsigned quick_length(unsigned at_least) {
  for (unsigned length = at_least;; ++length) {
    unsigned rest = length;
    for (const unsigned factor : {2u, 3u, 5u}) {
      while (rest % factor == 0) rest /= factor;
    }
    if (rest == 1) return length;
  }
}

// For every place of a line that repeats after `padded` pixels, the pixel that stands there: behind the line's end
// come its last pixels backwards, in front of its beginning its first ones.
std::vector<unsigned> mirrored(unsigned length, unsigned padded) {
  std::vector<unsigned> from(padded);
  for (unsigned i = 0; i < padded; ++i) {
    const unsigned behind = i - length, before = padded - 1 - i;  // if i >= length
    from[i] =
        i < length ? i : std::min(behind < before ? length - 1 - std::min(behind, length - 1) : before, length - 1);
  }
  return from;
}

// A complex function of place, or after `transform_rows` twice, of frequency.
class field {
 public:
  field(unsigned width, unsigned height) : width_(width), height_(height), at_(std::size_t{width} * height) {}

  unsigned width() const { return width_; }
  unsigned height() const { return height_; }
  complex* row(unsigned y) { return &at_[std::size_t{y} * width_]; }

  // Transforms every row and turns the field so that the columns become rows.
  void transform_rows(bool inverse) {
    const kissfft<float> transform(width_, inverse);
    field turned(height_, width_);
    constexpr unsigned strip = 8;  // rows that are written together, so that a column's pixels share memory lines
    std::vector<complex> rows(std::size_t{strip} * width_);
    for (unsigned top = 0; top < height_; top += strip) {
      const unsigned count = std::min(strip, height_ - top);
      for (unsigned y = 0; y < count; ++y) transform.transform(row(top + y), &rows[std::size_t{y} * width_]);
      for (unsigned x = 0; x < width_; ++x) {
        complex* const to = turned.row(x) + top;
        for (unsigned y = 0; y < count; ++y) to[y] = rows[std::size_t{y} * width_ + x];
      }
    }
    *this = std::move(turned);
  }

 private:
  unsigned width_, height_;
  std::vector<complex> at_;
};

// Entry i: what is left of the frequency i / steps, up to the corner of the spectrum.
constexpr unsigned steps = 1 << 14;
std::vector<float> sampled(const transfer& of) {
  std::vector<float> left(std::size_t(steps * std::numbers::sqrt2 / 2) + 2);
  for (std::size_t i = 0; i < left.size(); ++i) left[i] = float(of(double(i) / steps));
  return left;
}

float frequency(unsigned i, unsigned length) { return float(std::min(i, length - i)) / float(length); }

// Both parts of `image` by the filter real + i imaginary, which only mixes them where imaginary is not 0.
field filter(field image, const std::vector<float>& real, const std::vector<float>& imaginary) {
  image.transform_rows(false);
  image.transform_rows(false);
  const float scale = 1 / (float(image.width()) * float(image.height()));
  for (unsigned y = 0; y < image.height(); ++y) {
    complex* const row = image.row(y);
    const float fy = frequency(y, image.height());
    for (unsigned x = 0; x < image.width(); ++x) {
      const float fx = frequency(x, image.width());
      const auto i = std::size_t(std::sqrt(fx * fx + fy * fy) * float(steps) + 0.5f);
      const complex by{real[i] * scale, imaginary.empty() ? 0 : imaginary[i] * scale};
      // Not std::complex's product, which looks after infinities.
      row[x] = {row[x].real() * by.real() - row[x].imag() * by.imag(),
                row[x].real() * by.imag() + row[x].imag() * by.real()};
    }
  }
  image.transform_rows(true);
  image.transform_rows(true);
  return image;
}

// imaginary: may be null.
std::array<ink_plane, 2> filter(const ink_plane& real, const ink_plane* imaginary, const std::vector<float>& real_by,
                                const std::vector<float>& imaginary_by) {
  constexpr unsigned margin = 64;  // pixels of the mirror, at least
  const unsigned width = real.width, height = real.height;
  const std::vector<unsigned> columns = mirrored(width, quick_length(width + margin)),
                              rows = mirrored(height, quick_length(height + margin));
  field image(unsigned(columns.size()), unsigned(rows.size()));
  for (unsigned y = 0; y < rows.size(); ++y) {
    const float *const a = real.row(rows[y]), *const b = imaginary == nullptr ? nullptr : imaginary->row(rows[y]);
    for (unsigned x = 0; x < columns.size(); ++x) image.row(y)[x] = {a[columns[x]], b == nullptr ? 0 : b[columns[x]]};
  }
  image = filter(std::move(image), real_by, imaginary_by);

  std::array<ink_plane, 2> planes;
  for (ink_plane& plane : planes) plane = {width, height, std::vector<float>(std::size_t{width} * height)};
  for (unsigned y = 0; y < height; ++y) {
    for (unsigned x = 0; x < width; ++x) {
      planes[0].ink[std::size_t{y} * width + x] = image.row(y)[x].real();
      planes[1].ink[std::size_t{y} * width + x] = image.row(y)[x].imag();
    }
  }
  return planes;
}

}  // namespace

transfer gaussian(double sigma) {
  const double k = -2 * std::pow(std::numbers::pi * sigma, 2);
  return [k](double f) { return std::exp(k * f * f); };
}

std::array<ink_plane, 2> filtered(const ink_plane& plane, const transfer& first, const transfer& second) {
  return filter(plane, nullptr, sampled(first), sampled(second));
}

std::array<ink_plane, 2> filtered(const ink_plane& first, const ink_plane& second, const transfer& by) {
  return filter(first, &second, sampled(by), {});
}

}  // namespace vrk::tool
