// Ordered dither: block calls in any order, and lines in pieces of bytes beside whole ones.
#include "fuzz/library/halftone.h"

namespace {

using namespace vrk::fuzz;

constexpr halftone_calls calls{vrk_start_dither_block, vrk_exec_dither, vrk_exec_ditherx,
                               vrk_end_dither_block,   nullptr,         false};

// Eight pixels at a time, which are whole bytes of every packing, in their columns, give the bytes of the whole line.
void expect_pieces(halftone_block& b, byte_span pixels, std::uint32_t line) {
  const std::uint32_t pixel_bytes = b.info.plane_count * b.sample_bytes;
  const exact_memory src(std::size_t{b.line_width} * pixel_bytes);
  fill(src, pixels, line);
  require(vrk_start_dither_block(b.h->get(), b.line_width, 0, line) == 1, "the whole line is a block");
  const halftone_lines whole(b.info, true, b.line_width, 0);
  whole.exec(calls, b.h->get(), src.data(), false);
  for (std::uint32_t x = 0; x < b.line_width; x += 8) {
    const std::uint32_t n = std::min(8u, b.line_width - x);
    require(vrk_start_dither_block(b.h->get(), n, x, line) == 1, "a piece is a block");
    const exact_memory part(src.contents().subspan(std::size_t{x} * pixel_bytes, std::size_t{n} * pixel_bytes), 1);
    const halftone_lines piece(b.info, true, n, 1);
    piece.exec(calls, b.h->get(), part.data(), true);
    for (unsigned p = 0; p < piece.count(); ++p) {
      const std::size_t at = std::size_t{x} * b.info.plane_bits[p] / 8;
      require(std::memcmp(piece.line(p).data(), whole.line(p).data() + at, piece.line(p).size()) == 0,
              "pieces of a line have its bytes");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  input in(data, size);
  const std::uint32_t flags = in.u32(), offset = in.u8() % 64, choices = in.u8();
  const std::uint32_t width = (choices & 2) != 0 ? in.u16() % 400 : in.u8() % 72;
  const exact_memory table(in.section(), choices & 1);
  const byte_span pixels = in.section();
  const auto create = [&](void* mem) {
    return vrk_create_dither(width, std::uint32_t(table.size()), table.data(), flags, mem);
  };
  handle h(create, offset);
  if (!h) return 0;
  if (choices >> 4 == 0) h.expect_same_bytes(create);
  halftone_block block{&h, {}, true, width, (vrk_query_dither_hint(h.get()) & VRK_IN16) != 0 ? 2u : 1u};
  require(vrk_query_dither_info(h.get(), &block.info) == 1 && block.info.method == 2, "it is ordered dither");
  exact_memory bits(6, 1);
  vrk_query_dither_bitlen(h.get(), bits.data());
  require(std::memcmp(bits.data(), block.info.plane_bits, 6) == 0, "both queries tell the same bits");
  require(vrk_query_dither_info(h.get(), nullptr) == 0 && vrk_query_dither_info(nullptr, &block.info) == 0,
          "null tells nothing");
  for (unsigned done = 0; in.more() && done < 12; ++done) call_one(in, pixels, block, calls);
  if ((choices & 4) != 0) expect_pieces(block, pixels, choices);
  return 0;
}
