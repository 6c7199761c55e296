#include "bench/paired/inputs.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <stdexcept>

#include "bench/inks.h"
#include "kit/presets.h"
#include "vrk.h"

namespace vrk::bench {
namespace {

// K alone is that of four inks.
kit::bytes separations(const picture& p, unsigned channels, unsigned bits) {
  const unsigned inks = channels == 6 ? 6 : 4;
  const kit::bytes table = kit::ink_table(inks).encode();
  const auto create = [&](void* mem) {
    return vrk_create_csc2(std::uint32_t(table.size()), table.data(), 3, bits == 16 ? VRK_IN16 | VRK_OUT16 : 0, mem);
  };
  kit::bytes handle(create(nullptr)), planes(std::size_t{p.pixels()} * inks * bits / 8);
  create(handle.data());
  const void* const rgb = bits == 16 ? static_cast<const void*>(p.rgb16.data()) : p.rgb8.data();
  vrk_xform_csc2(handle.data(), rgb, p.pixels(), planes.data());
  if (channels != 1) return planes;
  kit::bytes black;
  for (std::size_t i = 0; i < planes.size(); i += inks * bits / 8) {
    black.insert(black.end(), planes.begin() + std::ptrdiff_t(i), planes.begin() + std::ptrdiff_t(i + bits / 8));
  }
  return black;
}

template <class Sample>
void change_zeros(const input& in, kit::bytes& bytes) {
  std::minstd_rand random(1);
  for (std::size_t i = 0; i < bytes.size(); i += sizeof(Sample)) {
    Sample sample;
    std::memcpy(&sample, &bytes[i], sizeof sample);
    if (in.planes == planes_from::scattered_zeros && random() % 100 < 28) sample = 0;
    if (in.no_zeros && sample == 0) sample = Sample{1 << 8 * (sizeof(Sample) - 1)};
    std::memcpy(&bytes[i], &sample, sizeof sample);
  }
}

}  // namespace

kit::bytes plane_samples(const input& in, unsigned channels, unsigned bits) {
  kit::bytes bytes =
      in.planes == planes_from::separations ? separations(*in.rgb, channels, bits) : ink_bytes(*in.rgb, channels, bits);
  bits == 8 ? change_zeros<std::uint8_t>(in, bytes) : change_zeros<std::uint16_t>(in, bytes);
  return bytes;
}

double share_of_zeros(const input& in) {
  const kit::bytes samples = plane_samples(in, 4, 8);
  return double(std::count(samples.begin(), samples.end(), 0)) / double(samples.size());
}

source_lines::source_lines(kit::bytes pixels, std::size_t pixel_bytes, unsigned width)
    : pixels_(std::move(pixels)),
      pixel_bytes_(pixel_bytes),
      first_(width < picture_width ? (picture_width - width) / 3 : 0),
      line_count_(unsigned((pixels_.size() / pixel_bytes - first_ - width) / picture_width + 1)) {}

const std::uint8_t* source_lines::operator()(unsigned line) const {
  return &pixels_[(first_ + std::size_t{line % line_count_} * picture_width) * pixel_bytes_];
}

}  // namespace vrk::bench
