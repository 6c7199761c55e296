#include <bit>

#include "base/samples.h"
#include "vrk.h"

namespace {

using namespace vrk;

static_assert(std::endian::native == std::endian::little);

// C, M, Y, K becomes K, C, M, Y, in place. A pixel is one word of four samples, the first one lowest: it turns by one.
template <class Pixel>
void cmyk_to_kcmy(u32 pixel_count, void* pixels) {
  constexpr int sample_bits = 8 * sizeof(Pixel) / 4;
  u8* at = static_cast<u8*>(pixels);
  for (u32 left = pixel_count; left != 0; --left, at += sizeof(Pixel)) {
    store_sample(at, std::rotl(load_sample<Pixel>(at), sample_bits));
  }
}

}  // namespace

extern "C" {

void VRK_CALL vrk_cmyk_to_kcmy_8(uint32_t pixel_count, uint8_t* pixels) { cmyk_to_kcmy<u32>(pixel_count, pixels); }

void VRK_CALL vrk_cmyk_to_kcmy_16(uint32_t pixel_count, void* pixels) { cmyk_to_kcmy<u64>(pixel_count, pixels); }

}  // extern "C"
