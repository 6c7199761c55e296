// A program of its own, compiled with the thread sanitizer together with the library: one handle of a transforming
// stage serves several threads at once, and every thread gets what a thread alone gets.
#include <cstdio>
#include <thread>
#include <vector>

#include "tests/every_export.h"

namespace {

using pixels = std::vector<std::uint8_t>;
constexpr std::uint32_t pixel_count = 4096;

template <class Transform>
bool serves_threads(const char* stage, std::uint32_t handle_size, Transform&& transform) {
  if (handle_size == 0) {
    std::fprintf(stderr, "%s: no handle\n", stage);
    return false;
  }
  pixels expected(pixel_count * 8);
  transform(expected.data());
  std::vector<pixels> results(4, pixels(expected.size()));
  std::vector<std::thread> threads;
  for (pixels& out : results) threads.emplace_back([&] { transform(out.data()); });
  for (std::thread& thread : threads) thread.join();
  const bool same = results == std::vector(4, expected);
  if (!same) std::fprintf(stderr, "%s: threads differ\n", stage);
  return same;
}

}  // namespace

int main() {
  const vrk::test::job_tables tables;
  pixels src(pixel_count * 4);
  for (std::size_t i = 0; i < src.size(); ++i) src[i] = std::uint8_t(i * 2654435761u >> 24);
  std::vector<std::uint64_t> mem(1 << 17);
  void* const handle = mem.data();
  const std::int16_t balance[] = {1, -1, 2};
  const auto size = [](const vrk::kit::bytes& image) { return std::uint32_t(image.size()); };

  bool ok = serves_threads(
      "preproc", vrk_create_preproc(balance, 1, 1, 1, tables.curve.data(), 0, nullptr, VRK_OUT16, handle),
      [&](std::uint8_t* dst) { vrk_xform_preproc(handle, src.data(), nullptr, pixel_count, dst); });
  ok &= serves_threads("preproc2", vrk_create_preproc2(balance, 1, 0, nullptr, 0, nullptr, VRK_COMPOSE, handle),
                       [&](std::uint8_t* dst) { vrk_xform_preproc2(handle, src.data(), nullptr, pixel_count, dst); });
  for (const std::uint32_t flags : {0u, VRK_PREC12 | VRK_OUT16}) {
    ok &= serves_threads("csc1", vrk_create_csc1(size(tables.csc1), tables.csc1.data(), flags, handle),
                         [&](std::uint8_t* dst) { vrk_xform_csc1(handle, src.data(), nullptr, pixel_count, dst); });
    ok &= serves_threads("csc2", vrk_create_csc2(size(tables.csc2), tables.csc2.data(), 3, flags, handle),
                         [&](std::uint8_t* dst) { vrk_xform_csc2(handle, src.data(), pixel_count, dst); });
  }
  ok &= serves_threads("csc2 gray", vrk_create_csc2(size(tables.csc2), tables.csc2.data(), 1, 0, handle),
                       [&](std::uint8_t* dst) { vrk_xform_csc2(handle, src.data(), pixel_count, dst); });
  for (const std::uint32_t flags : {0u, VRK_COMPOSE | VRK_OUT16}) {
    ok &= serves_threads("postproc",
                         vrk_create_postproc(4, 1, tables.curves.data(), 1, tables.curve.data(), 0, nullptr, 0, nullptr,
                                             0, nullptr, 0, nullptr, 0, nullptr, flags, handle),
                         [&](std::uint8_t* dst) { vrk_xform_postproc(handle, src.data(), pixel_count, dst); });
  }
  return ok ? 0 : 1;
}
