// What the works are done on: pictures, and the ink planes made of them.
#pragma once

#include "bench/pictures.h"
#include "kit/bytes.h"

namespace vrk::bench {

enum class planes_from {
  complements,      // of R, G, B: see bench/inks.h
  scattered_zeros,  // the same with 0 for 28 % of the samples, anywhere
  separations,      // the kit's inks, as `vrk print` has them: where light colours need no black, it is 0, and so on
};

struct input {
  std::string name;
  const picture* rgb;
  planes_from planes = planes_from::complements;
  bool no_zeros = false;  // 1 for every sample of 0
};

// Samples of 8 or 16 bits, K, C, M, Y, fifth, sixth. channels: 1, 4 or 6.
kit::bytes plane_samples(const input& in, unsigned channels, unsigned bits);

double share_of_zeros(const input& in);  // of four planes of bytes

// Lines of any width out of a picture: they begin one picture line apart, narrow ones in its left half, and wide ones
// go on into the picture's next lines.
class source_lines {
 public:
  source_lines(kit::bytes pixels, std::size_t pixel_bytes, unsigned width);
  const std::uint8_t* operator()(unsigned line) const;

 private:
  kit::bytes pixels_;
  std::size_t pixel_bytes_, first_;
  unsigned line_count_;
};

// Every picture in a directory, enlarged to picture_width and thinned to picture_lines lines.
std::vector<picture> read_pictures(const std::string& directory);

}  // namespace vrk::bench
