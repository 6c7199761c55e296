// usage: vrk_digest [speed] [--level base|sse41|avx2] [NAME]
// Prints a digest, or the speed, of every entry whose name begins with NAME. The digests must be the same from every
// build, and from every level of vector instructions, which scripts/compare-builds checks. A level that the processor
// does not have ends the program with status 77.
#include <algorithm>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string_view>

#include "digest/digest_entry.h"

namespace vrk::digest {

options chosen;

kit::bytes noise(std::size_t size, std::uint64_t seed) {
  kit::bytes out(size);
  std::uint64_t state = seed * 0x9E3779B97F4A7C15;
  for (std::uint8_t& byte : out) {
    state = state * 6364136223846793005 + 1442695040888963407;
    byte = std::uint8_t(state >> 56);
  }
  return out;
}

pixel_bytes picture(std::uint32_t pixel_count, std::uint32_t bytes_per_pixel, std::uint64_t seed) {
  const kit::bytes grain = noise(std::size_t(pixel_count) * bytes_per_pixel, seed);
  pixel_bytes out(grain.begin(), grain.end());
  for (std::uint32_t i = 0; i < bytes_per_pixel; ++i) {
    out[i] = 255;
    out[bytes_per_pixel + i] = 0;
  }
  for (std::size_t i = out.size() / 2; i < out.size() * 3 / 4; ++i) out[i] = std::uint8_t(i);
  return out;
}

std::string with_flags(std::string name, std::uint32_t flags) {
  constexpr struct {
    std::uint32_t bit;
    const char* name;
  } bits[] = {{VRK_IN16, " in16"},     {VRK_OUT16, " out16"},     {VRK_PREC12, " high"},    {VRK_COMPOSE, " compose"},
              {VRK_INVERT, " invert"}, {VRK_RANDOM4, " random4"}, {VRK_K_CODE3, " k_code3"}};
  for (const auto& bit : bits) {
    if ((flags & bit.bit) != 0) name += bit.name;
  }
  return name;
}

digest_entry::digest_entry(std::string name) : name_(std::move(name)), wanted_(name_.starts_with(chosen.only)) {}

std::uint8_t* digest_entry::output(std::size_t size) { return outputs_.emplace_back(size, std::uint8_t(0x5A)).data(); }

void digest_entry::add(std::uint32_t number) {
  const std::uint8_t bytes[] = {std::uint8_t(number), std::uint8_t(number >> 8), std::uint8_t(number >> 16),
                                std::uint8_t(number >> 24)};
  add(bytes);
}

// Handles are read with their gaps, which the address sanitizer watches.
__attribute__((no_sanitize_address)) void digest_entry::add(std::span<const std::uint8_t> bytes) {
  for (const std::uint8_t byte : bytes) digest_ = (digest_ ^ byte) * 0x100000001B3;
}

void digest_entry::add_and_choose_level(std::span<const std::uint8_t> handle, cpu_level& level) {
  if (!chosen.level) return add(handle);
  if (*chosen.level > level) {
    std::fputs("vrk_digest: this processor does not have that level\n", stderr);
    std::exit(77);
  }
  level = cpu_level::base;
  add(handle);
  level = *chosen.level;
}

void digest_entry::run(std::uint32_t lines, const std::function<void(std::uint32_t y)>& line) {
  if (!chosen.speed) {
    for (std::uint32_t y = 0; y < lines; ++y) {
      line(y);
      for (const pixel_bytes& bytes : outputs_) add(bytes);
    }
    std::printf("%016" PRIx64 " %s\n", digest_, name_.c_str());
    return;
  }
  using clock = std::chrono::steady_clock;
  using seconds = std::chrono::duration<double>;
  double best = 1e9;     // seconds for all lines
  unsigned repeats = 1;  // in one measurement, which takes half a millisecond and more
  for (int measurements = 0; measurements < 40;) {
    const auto start = clock::now();
    for (unsigned i = 0; i < repeats; ++i) {
      for (std::uint32_t y = 0; y < lines; ++y) line(y);
    }
    const double taken = seconds(clock::now() - start).count();
    if (taken < 0.0005) {
      repeats *= 2;
    } else {
      best = std::min(best, taken / repeats);
      ++measurements;
    }
  }
  std::printf("%10.1f %s\n", double(chosen.width) * lines / best / 1e6, name_.c_str());
}

}  // namespace vrk::digest

int main(int count, char** words) {
  using namespace vrk::digest;
  const std::map<std::string_view, vrk::cpu_level> levels{
      {"base", vrk::cpu_level::base}, {"sse41", vrk::cpu_level::sse41}, {"avx2", vrk::cpu_level::avx2}};
  for (int i = 1; i < count; ++i) {
    if (words[i] == std::string_view("speed")) {
      chosen.speed = true;
      chosen.width = 8192;
    } else if (words[i] == std::string_view("--level") && i + 1 < count && levels.contains(words[i + 1])) {
      chosen.level = levels.at(words[++i]);
    } else {
      chosen.only = words[i];
    }
  }
  color_entries();
  halftone_entries();
}
