#include "frame/samples.h"
#include "vrk.h"

namespace {

using namespace vrk;

// C, M, Y, K becomes K, C, M, Y, in place. Samples move whole.
template <class T>
void cmyk_to_kcmy(u32 pixel_count, void* pixels) {
  u8* at = static_cast<u8*>(pixels);
  for (u32 left = pixel_count; left != 0; --left, at += 4 * sizeof(T)) {
    const T k = load_sample<T>(at + 3 * sizeof(T));
    std::memmove(at + sizeof(T), at, 3 * sizeof(T));
    store_sample(at, k);
  }
}

}  // namespace

extern "C" {

void VRK_CALL vrk_cmyk_to_kcmy_8(uint32_t pixel_count, uint8_t* pixels) { cmyk_to_kcmy<u8>(pixel_count, pixels); }

void VRK_CALL vrk_cmyk_to_kcmy_16(uint32_t pixel_count, void* pixels) { cmyk_to_kcmy<u16>(pixel_count, pixels); }

}  // extern "C"
