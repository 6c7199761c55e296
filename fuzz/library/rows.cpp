// Rows that serve the same handle, at every level of this processor, give the bytes of the row of the definition.
#include "csc/csc1_kernels.h"
#include "csc/csc2_kernels.h"
#include "fuzz/library/runs.h"
#include "halftone/dither/dither_kernels.h"
#include "kit/explain.h"
#include "kit/read_tables.h"
#include "postproc/postproc_kernels.h"
#include "tests/halftone/ed_reference.h"
#include "tests/levels.h"

namespace {

using namespace vrk;
using namespace vrk::fuzz;

struct run {
  run(input& in, byte_span pixels, std::size_t in_bytes, std::size_t out_bytes)
      : count(pixels_of_run(in)), src(count * in_bytes, in.u8() % 2), out_size(count * out_bytes) {
    fill(src, pixels, 7);
  }
  template <class Kernel>
  void expect(Kernel kernel) {
    const exact_memory out(out_size, 1);
    kernel(src.data(), count, out.data());
    if (first.empty()) first.assign(out.contents().begin(), out.contents().end());
    require(std::equal(first.begin(), first.end(), out.contents().begin()), "rows give the same bytes");
  }
  u32 count;
  exact_memory src;
  std::size_t out_size;
  fuzz::bytes first{};
};

constexpr u32 bytes_of(int bits) { return bits == 16 ? 2 : 1; }

// expect(kernel) of all rows that `serves` finds, of all levels.
template <class Rows, class Serves, class Expect>
void try_rows(Rows rows, Serves serves, Expect expect) {
  for (const auto& row : rows) {
    if (!serves(row)) continue;
    for (const cpu_level level : test::levels_of_this_machine()) {
      if (level == cpu_level::base || row.kernel[level] != row.kernel.base) expect(row.kernel[level]);
    }
  }
}

void try_csc1(input& in, u32 flags) {
  const exact_memory table(in.section(), 0);
  const fuzz::handle h([&](void* mem) { return vrk_create_csc1(u32(table.size()), table.data(), flags, mem); }, 3);
  if (!h) return;
  auto& record = record_of<csc1_handle>(h.get());
  record.layout = in.u8();
  const csc1_row& chosen = csc1_rows()[record.row];
  const u32 samples = record.layout == 2 || record.layout == 3 ? 4 : 3;
  run r(in, in.section(), samples * bytes_of(chosen.widths.in), samples * bytes_of(chosen.widths.out));
  try_rows(
      csc1_rows(),
      [&](const csc1_row& row) {
        return row.rule == chosen.rule && row.widths == chosen.widths && (record.grid.bounded != 0 || !row.bounded);
      },
      [&](csc1_kernel* kernel) {
        r.expect([&](const u8* src, u32 count, u8* dst) { kernel(record, src, nullptr, count, dst); });
      });
}

void try_csc2(input& in, u32 flags) {
  const u32 samples_in = in.u8() % 2 == 0 ? 3 : 1;
  const exact_memory table(in.section(), 0);
  const auto create = [&](void* mem) {
    return vrk_create_csc2(u32(table.size()), table.data(), samples_in, flags, mem);
  };
  const fuzz::handle h(create, 3);
  if (!h) return;
  auto& record = record_of<csc2_handle>(h.get());
  record.layout = in.u8();
  const csc2_row& chosen = csc2_rows()[record.row];
  const u32 samples = samples_in == 1 ? 1 : record.layout == 2 || record.layout == 3 ? 4 : 3;
  run r(in, in.section(), samples * bytes_of(chosen.widths.in), chosen.inks * bytes_of(chosen.widths.out));
  try_rows(
      csc2_rows(),
      [&](const csc2_row& row) {
        return row.inks == chosen.inks && row.gray == chosen.gray && row.widths == chosen.widths &&
               (record.grid.bounded != 0 || !row.bounded);
      },
      [&](csc2_kernel* kernel) {
        r.expect([&](const u8* src, u32 count, u8* dst) { kernel(record, src, count, dst); });
      });
}

// Four planes with curves of a seed: no other have more than one row.
void try_postproc(input& in, u32 flags) {
  fuzz::bytes curves{'1', 'd', 'l', 't', '0', '0', '1', '0', 4, 0, 4, 0};
  const byte_span body = in.section();
  if (body.empty()) return;
  for (std::size_t i = 0; i < 8192; ++i) curves.push_back(body[i % body.size()]);
  const exact_memory table(curves, 0);
  const u32 on = in.u8();
  const auto create = [&](void* mem) {
    return vrk_create_postproc(4, on & 1, table.data(), 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0,
                               nullptr, flags, mem);
  };
  const fuzz::handle h(create, 1);
  auto& record = record_of<postproc_handle>(h.get());
  run r(in, in.section(), 4 * bytes_of(postproc_rows()[record.row].in), 4 * bytes_of(postproc_rows()[record.row].out));
  const postproc_row& chosen = postproc_rows()[record.row];
  try_rows(
      postproc_rows(),
      [&](const postproc_row& row) { return row.in == chosen.in && row.out == chosen.out && !row.in_place; },
      [&](postproc_kernel* kernel) {
        r.expect([&](const u8* src, u32 count, u8* dst) { kernel(record, src, count, dst); });
      });
}

// Pieces of the definition are in the target of its own; here vectors by level.
void try_dither(input& in, u32 flags) {
  const u32 width = 16 + in.u8();
  const exact_memory table(in.section(), 0);
  const auto create = [&](void* mem) { return vrk_create_dither(width, u32(table.size()), table.data(), flags, mem); };
  const fuzz::handle h(create, 3);
  if (!h) return;
  auto& record = record_of<dither_handle>(h.get());
  const byte_span pixels = in.section();
  const exact_memory src(std::size_t{width} * record.plane_count * ((flags & VRK_IN16) != 0 ? 2 : 1), in.u8() % 2);
  fill(src, pixels, 1);
  const u32 x = in.u8() % width, line = in.u8();
  fuzz::bytes first;
  for (const cpu_level level : test::levels_of_this_machine()) {
    record.level = level;
    vrk_start_dither_block(h.get(), width - x, x, line);
    fuzz::bytes all;
    std::vector<fuzz::bytes> lines(6);
    std::uint8_t* at[6]{};
    vrk_ht_info info;
    vrk_query_dither_info(h.get(), &info);
    for (u32 p = 0; p < info.plane_count; ++p) {
      lines[p].resize((std::size_t{info.plane_bits[p]} * (width - x) + 7) / 8);
      at[p] = lines[p].data();
    }
    vrk_exec_ditherx(h.get(), src.data(), at);
    for (const fuzz::bytes& l : lines) all.insert(all.end(), l.begin(), l.end());
    if (first.empty()) first = all;
    require(first == all, "levels give the same bytes");
  }
}

// Error diffusion has no levels, but rows for tables of two levels: lines beside those of the definition.
void try_ed(input& in, u32 flags) {
  flags &= ~VRK_RANDOM4;  // the reference draws from a generator of its own
  const u32 width = in.u8() % 48;
  const byte_span levels = in.section(), spread = in.section(), pixels = in.section();
  const kit::bytes edpr(levels.begin(), levels.end()), edtb(spread.begin(), spread.end());
  if (kit::why_refused_edpr(edpr) || kit::why_refused_edtb(edtb)) return;
  const auto create = [&](void* mem) {
    return vrk_create_ed(width, u32(edtb.size()), edtb.data(), u32(edpr.size()), edpr.data(), flags, mem);
  };
  const fuzz::handle h(create, 0);
  if (!h) return;
  const test::ed_tables tables{kit::read_edpr(edpr), kit::read_edtb(edtb)};
  for (const kit::ed_plane& plane : tables.params.planes) {
    const auto scaled = [&](u16 v) { return (flags & 0x11) != 0 ? int(i16(v)) : (v >> 2) & 255; };
    for (std::size_t i = 1; i < plane.thresholds.size(); ++i) {
      if (scaled(plane.thresholds[i - 1]) > scaled(plane.thresholds[i])) return;  // not ascending: nothing is promised
    }
  }
  test::ed_reference reference(tables, width, flags);
  if (reference.planes() == 0) return;
  u32 line = 0;
  for (unsigned n = 0; n < 6; ++n) {
    const u32 x = in.u8() % (width + 1), block = width - x;
    if (in.u8() % 4 == 0) line += 2;
    require(vrk_start_ed_block(h.get(), block, x, line) == 1 && reference.start(block, x, line), "blocks fit");
    test::samples values(block * reference.planes());
    u32 seed = n;
    for (std::size_t i = 0; i < values.size(); ++i) {
      seed = seed * 1103515245 + 12345;
      const u32 v = pixels.empty() ? seed >> 16 : pixels[(i + n) % pixels.size()] * 257u;
      values[i] = u16((flags & VRK_IN16) != 0 ? v : v & 255);
    }
    const std::vector<u8> src = test::packed(values, (flags & VRK_IN16) != 0);
    const test::lines expected = reference.line(values);
    test::lines out = expected;
    std::vector<std::uint8_t*> at;
    for (auto& l : out) l.assign(l.size(), 0xA5), at.push_back(l.data());
    require(vrk_exec_edx(h.get(), src.data(), at.data()) == 1 && out == expected, "lines are those of the definition");
    ++line;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  input in(data, size);
  const unsigned stage = in.u8() % 5;
  const u32 flags = in.u16();
  constexpr decltype(&try_csc1) stages[] = {try_csc1, try_csc2, try_postproc, try_dither, try_ed};
  stages[stage](in, flags);
  return 0;
}
