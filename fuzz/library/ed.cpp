// Error diffusion: two handles on one thread, from the same tables, with block calls in any order.
#include "fuzz/library/halftone.h"

namespace {

using namespace vrk::fuzz;

constexpr halftone_calls calls{vrk_start_ed_block, vrk_exec_ed, vrk_exec_edx, vrk_end_ed_block, vrk_clear_ed_buf, true};

halftone_block block_of(handle& h, const exact_memory& levels, std::uint32_t width) {
  halftone_block b{&h, {}, levels.data()[11] != 0, width, (vrk_query_ed_hint(h.get()) & VRK_IN16) != 0 ? 2u : 1u};
  require(vrk_query_ed_info(h.get(), &b.info) == 1 && b.info.method == 1, "it is error diffusion");
  exact_memory bits(6, 1);
  vrk_query_ed_bitlen(h.get(), bits.data());
  require(std::memcmp(bits.data(), b.info.plane_bits, 6) == 0, "both queries tell the same bits");
  return b;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  input in(data, size);
  const std::uint32_t flags = in.u32(), other_flags = in.u32(), offset = in.u8() % 64, choices = in.u8();
  const std::uint32_t width = (choices & 2) != 0 ? in.u32() : in.u8() % 72;
  const exact_memory levels(in.section(), choices & 1), spread(in.section(), choices >> 2 & 1);
  const byte_span pixels = in.section();
  const auto create_with = [&](std::uint32_t f) {
    return [&, f](void* mem) {
      return vrk_create_ed(width, std::uint32_t(spread.size()), spread.data(), std::uint32_t(levels.size()),
                           levels.data(), f, mem);
    };
  };
  handle first(create_with(flags), offset);
  if (!first) return 0;
  if (choices >> 4 == 0) first.expect_same_bytes(create_with(flags));
  std::optional<handle> second;
  halftone_block blocks[] = {block_of(first, levels, width), {}};
  if ((choices & 8) != 0) {
    second.emplace(create_with(other_flags), 0);
    if (*second) blocks[1] = block_of(*second, levels, width);
  }
  for (unsigned done = 0; in.more() && done < 16; ++done) {
    call_one(in, pixels, blocks[blocks[1].h != nullptr ? done % 2 : 0], calls);
  }
  return 0;
}
