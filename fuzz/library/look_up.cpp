#include "fuzz/memory.h"
#include "vrk.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vrk::fuzz;
  input in(data, size);
  const std::uint16_t function = in.u8(), family = in.u16(), kind = in.u16();
  const std::uint16_t a = in.u16(), b = in.u16(), c = in.u16(), d = in.u16();
  const exact_memory blob(in.section(), function >> 7);
  const std::uint32_t blob_size = std::uint32_t(blob.size());
  const auto look_up = [&](vrk_table_ref* ref) -> std::uint32_t {
    const void* const image = family == 0x4000 ? nullptr : blob.data();
    switch (function % 7) {
      case 0:
        return vrk_log_csc1(blob_size, image, ref, family, kind, a, b, c, d);
      case 1:
        return vrk_log_csc2(blob_size, image, ref, family, kind, a, b, c, d);
      case 2:
        return vrk_log_htone(blob_size, image, ref, family, a | std::uint32_t{b} << 16);
      case 3:
        return vrk_log_ingamma(blob_size, image, ref, family, std::int16_t(a));
      case 4:
        return vrk_log_ingamma2(blob_size, image, ref, family, std::int16_t(a));
      case 5:
        return vrk_log_outgamma(blob_size, image, ref, family);
      default:
        return vrk_log_rank(blob_size, image, ref, family, std::int16_t(a), std::int16_t(b));
    }
  };
  vrk_table_ref ref{0xDEADBEEF, nullptr};
  const std::uint32_t found = look_up(&ref);
  require(look_up(nullptr) == 0, "without a place for the answer nothing is found");
  if (found == 0) {
    require(ref.length == 0 || ref.length == 0xDEADBEEF, "a look-up that finds nothing has length 0, or leaves it");
    return 0;
  }
  require(found == 1 && ref.length <= blob_size, "a table lies inside its blob");
  const exact_memory copy(ref.length, function >> 6 & 1);
  ref.data = copy.data();
  require(look_up(&ref) == 1 && ref.length == copy.size(), "the copy is as long as announced");
  return 0;
}
