// Runs inputs of a corpus through a target, in programs of every compiler.
// usage: vrk_replay TARGET FILE...: archives by tar, or single inputs
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <vector>

using entry_point = int(const std::uint8_t* data, std::size_t size);

#define FUZZ_TARGET(name) extern "C" entry_point fuzz_##name;
#include "targets.inc"
#undef FUZZ_TARGET

namespace {

struct target {
  const char* name;
  entry_point* run;
};

constexpr target targets[] = {
#define FUZZ_TARGET(name) {#name, fuzz_##name},
#include "targets.inc"
};

void run_one(const target& t, const std::uint8_t* data, std::size_t size) {
  const std::vector<std::uint8_t> exact(data, data + size);
  t.run(exact.data(), exact.size());
}

// Every file of the archive; the name of one that ends the program is the last that is said.
unsigned run_archive(const target& t, const std::vector<std::uint8_t>& tar) {
  constexpr std::size_t block = 512;
  unsigned files = 0;
  for (std::size_t at = 0; at + block <= tar.size() && tar[at] != 0;) {
    const char* const header = reinterpret_cast<const char*>(tar.data() + at);
    const std::size_t size = std::strtoul(header + 124, nullptr, 8);
    at += block;
    if (size > tar.size() - at) return 0;
    std::fprintf(stderr, "\r%.100s ", header);
    if (header[156] == '0') run_one(t, tar.data() + at, size), ++files;
    at += (size + block - 1) / block * block;
  }
  return files;
}

}  // namespace

int main(int argc, char** argv) {
  const auto* const found = std::find_if(std::begin(targets), std::end(targets), [&](const target& t) {
    return argc > 2 && std::strcmp(t.name, argv[1]) == 0;
  });
  if (found == std::end(targets)) {
    std::fprintf(stderr, "usage: vrk_replay TARGET FILE...; targets:");
    for (const target& t : targets) std::fprintf(stderr, " %s", t.name);
    return std::fputc('\n', stderr), 2;
  }
  unsigned inputs = 0;
  for (int i = 2; i < argc; ++i) {
    std::ifstream file(argv[i], std::ios::binary);
    const std::vector<std::uint8_t> bytes(std::istreambuf_iterator<char>(file), {});
    const bool archive = bytes.size() >= 512 && std::memcmp(bytes.data() + 257, "ustar", 5) == 0;
    if (archive)
      inputs += run_archive(*found, bytes);
    else if (file)
      run_one(*found, bytes.data(), bytes.size()), ++inputs;
  }
  std::printf("\n%s: %u inputs\n", found->name, inputs);
  return inputs == 0;
}
