#include "tools/files/standard_output.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <vector>

#include "tools/files/output_set.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {

void refuse_as_standard_output(const std::vector<std::string>& inputs) {
  struct stat output {};
  if (fstat(STDOUT_FILENO, &output) != 0 || !S_ISREG(output.st_mode)) return;
  for (const std::string& input : inputs) {
    if (identity_of(input) != file_identity{output.st_dev, output.st_ino}) continue;
    throw user_error("standard output is " + (input == "-" ? std::string("standard input") : input) +
                     ", which this run reads: give it another file");
  }
}

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
