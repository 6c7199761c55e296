// Changes inputs of the library's targets where it counts: fields of headers, sizes, single bytes of bodies.
#include <algorithm>
#include <cstring>

#include "fuzz/input.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace {

// Counts and bits of every sort, neighbours of the characters of tags and versions, and what 16-bit fields hold.
constexpr std::uint8_t values[] = {0,   1,   2,   3,   4,   5,   6,   7,   8,   9,   16,  17,  31, 32,
                                   '0', '1', '2', 'z', '{', 'C', 'H', 'X', 127, 128, 129, 254, 255};

struct generator {
  std::uint32_t state;
  std::uint32_t below(std::size_t n) {
    state = state * 1664525 + 1013904223;
    return std::uint32_t((std::uint64_t{state >> 8} * n) >> 24);
  }
};

// A section in its place: behind its length, before the others.
class section {
 public:
  section(std::uint8_t* data, std::size_t size, std::size_t most, std::size_t at)
      : data_(data), size_(size), most_(most), at_(at + 2) {
    length_ = std::min<std::size_t>(std::size_t(data[at] << 8 | data[at + 1]), size - at_);
  }

  std::uint8_t* begin() const { return data_ + at_; }
  std::size_t size() const { return length_; }
  std::size_t end() const { return at_ + length_; }
  std::size_t input_size() const { return size_; }
  std::size_t room() const { return std::min(most_ - size_, 0xFFFF - length_); }

  // New bytes come from the end of the section, whatever they are.
  void resize(std::size_t length) {
    std::memmove(begin() + length, begin() + length_, size_ - end());
    size_ = size_ - length_ + length;
    length_ = length;
    data_[at_ - 2] = std::uint8_t(length >> 8), data_[at_ - 1] = std::uint8_t(length);
  }

 private:
  std::uint8_t* data_;
  std::size_t size_, most_, at_, length_;
};

// numbers: it is the section of them, all of which count alike.
void change(section& s, bool numbers, generator& random) {
  std::uint8_t* const bytes = s.begin();
  const std::size_t size = s.size(), header = numbers ? size : std::min<std::size_t>(size, 48);
  switch (size == 0 ? 5 : random.below(8)) {
    case 0:  // a field of a byte
      bytes[random.below(header)] = values[random.below(sizeof values)];
      break;
    case 1:  // one more, one less
      bytes[random.below(header)] += std::uint8_t(random.below(2) == 0 ? 1 : 255);
      break;
    case 2:
      bytes[random.below(size)] ^= std::uint8_t(1 << random.below(8));
      break;
    case 3:  // a byte of the body
      bytes[random.below(size)] = std::uint8_t(random.below(256));
      break;
    case 4:  // shorter, mostly by little
      s.resize(size - 1 - random.below(random.below(4) == 0 ? size : std::min<std::size_t>(size, 4)));
      break;
    case 5: {  // longer
      const std::size_t more = std::min<std::size_t>(s.room(), 1 + random.below(random.below(4) == 0 ? 64 : 4));
      s.resize(size + more);
      for (std::size_t i = 0; i < more; ++i) bytes[size + i] = std::uint8_t(random.below(256));
      break;
    }
    case 6: {  // bytes from another place
      const std::size_t n = 1 + random.below(std::min<std::size_t>(size, 12));
      std::memmove(bytes + random.below(size - n + 1), bytes + random.below(size - n + 1), n);
      break;
    }
    default: {  // what libFuzzer knows of comparisons and of other inputs
      const std::size_t most = size + std::min<std::size_t>(s.room(), 32);
      s.resize(most);
      s.resize(LLVMFuzzerMutate(bytes, size, most));
    }
  }
}

// Repairs the lengths of sections, so that the last one ends where the input does.
std::size_t sections_of(std::uint8_t* data, std::size_t size, std::size_t (&at)[12]) {
  std::size_t count = 0;
  for (std::size_t next = 0; count < 12 && next + 2 <= size; ++count) {
    at[count] = next;
    const std::size_t length = std::min<std::size_t>(std::size_t(data[next] << 8 | data[next + 1]), size - next - 2);
    data[next] = std::uint8_t(length >> 8), data[next + 1] = std::uint8_t(length);
    next += 2 + length;
  }
  return count;
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most, unsigned seed) {
  generator random{seed};
  for (std::uint32_t changes = 1 + random.below(3); changes != 0; --changes) {
    if (size < 2) {
      if (most < 2) return size;
      data[0] = data[1] = 0, size = 2;
    }
    std::size_t at[12];
    const std::size_t sections = sections_of(data, size, at);
    const std::size_t chosen = random.below(3) == 0 ? 0 : random.below(sections);
    section s(data, size, most, at[chosen]);
    change(s, chosen == 0, random);
    size = s.input_size();
  }
  return size;
}
