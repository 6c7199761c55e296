// The entries of the digest list. Each runs one or more stages of the library; every build runs the same entries on the
// same computed input, and prints a digest, or the speed, of each.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/carver.h"
#include "base/cpu_level.h"
#include "kit/bytes.h"
#include "vrk.h"

namespace vrk::digest {

// Set once, before the first entry.
struct options {
  bool speed = false;              // print Mpixel/s instead of digests
  std::string_view only{};         // run entries whose names begin with this
  std::optional<cpu_level> level;  // of the kernels that run, not above the processor's
  // Pixels of a line: odd, so no multiple of a vector, and enough for the fast kernels of the converters.
  std::uint32_t width = 353;
};
extern options chosen;

// Pixels of a line so short that converters take the kernel that follows the definition.
constexpr std::uint32_t short_width = 61;

// Bytes that look random, the same everywhere.
kit::bytes noise(std::size_t size, std::uint64_t seed = 1);

// Bytes that begin at a cache line on every build.
template <class T>
struct cache_line_allocator {
  using value_type = T;
  static constexpr std::align_val_t line{64};

  T* allocate(std::size_t n) { return static_cast<T*>(::operator new(n * sizeof(T), line)); }
  void deallocate(T* entry, std::size_t) { ::operator delete(entry, line); }
  friend bool operator==(const cache_line_allocator&, const cache_line_allocator&) { return true; }
};
using pixel_bytes = std::vector<std::uint8_t, cache_line_allocator<std::uint8_t>>;

// Pixels of noise, after a white and a black one, with a ramp in the third quarter.
pixel_bytes picture(std::uint32_t pixel_count, std::uint32_t bytes_per_pixel, std::uint64_t seed = 1);

// The name with the names of the flags that are set, such as "name in16 out16".
std::string with_flags(std::string name, std::uint32_t flags);

// Memory for one handle, 4 bytes past a 32-byte boundary.
class handle_memory {
 public:
  explicit handle_memory(std::uint32_t size) : chunks_(size / 32 + 2) {}
  void* mem() { return chunks_[0].bytes + 4; }

 private:
  struct alignas(32) chunk {
    std::uint8_t bytes[32] = {};
  };
  std::vector<chunk> chunks_;
};

// One line of the list. An entry that is not wanted must not be built or run.
class digest_entry {
 public:
  explicit digest_entry(std::string name);
  bool wanted() const { return wanted_; }

  // Makes a handle by both calls of a create function. Sizes and the built memory are part of the digest.
  // Handle: its record, of a family with kernels for several levels of processors.
  template <class Handle = void, class Create>
  void* build(Create create) {
    const std::uint32_t size = create(nullptr);
    handles_.push_back(std::make_unique<handle_memory>(size));
    void* const mem = handles_.back()->mem();
    const std::uint32_t used = create(mem);
    add(size);
    add(used);
    const std::span<const std::uint8_t> built(static_cast<const std::uint8_t*>(mem), used);
    if constexpr (std::is_void_v<Handle>) {
      add(built);
    } else {
      add_and_choose_level(built, record_of<Handle>(mem).level);
    }
    return mem;
  }

  // A buffer whose contents are part of the digest after every line.
  std::uint8_t* output(std::size_t size);

  // Runs `line` for y = 0 ... lines - 1 and prints what came out.
  void run(std::uint32_t lines, const std::function<void(std::uint32_t y)>& line);

  void add(std::uint32_t number);
  void add(std::span<const std::uint8_t> bytes);

 private:
  // Where a level was chosen, handles count as created on a processor of the base level, so that the lists of all
  // levels are the same.
  void add_and_choose_level(std::span<const std::uint8_t> handle, cpu_level& level);

  std::string name_;
  bool wanted_;
  std::uint64_t digest_ = 0xCBF29CE484222325;  // FNV-1a
  std::vector<std::unique_ptr<handle_memory>> handles_;
  std::vector<pixel_bytes> outputs_;
};

void color_entries();
void halftone_entries();

}  // namespace vrk::digest
