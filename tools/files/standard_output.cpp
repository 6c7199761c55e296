#include "tools/files/standard_output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <vector>

#include "tools/pipeline/user_error.h"

namespace vrk::tool {

void copy_to_standard_output(const std::filesystem::path& file, unsigned first) {
  const auto fail = [](const std::string& name) { throw user_error(name + ": " + std::strerror(errno)); };
  std::ifstream from(file, std::ios::binary);
  from.seekg(first);
  std::vector<char> part(1 << 16);
  while (from.read(part.data(), std::streamsize(part.size())), from.gcount() > 0) {
    const auto count = std::size_t(from.gcount());
    if (std::fwrite(part.data(), 1, count, stdout) != count) fail("standard output");
  }
  if (!from.eof()) fail(file.string());
  if (std::fflush(stdout) != 0) fail("standard output");
}

}  // namespace vrk::tool
