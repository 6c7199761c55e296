#include "tools/raster/ghostscript.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sstream>

#include "tools/command_line/printable.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {

ghostscript::ghostscript(picture_input document, resolution dpi)
    : name_(std::move(document.name)), document_(std::move(document.file)) {
  int in = fileno(document_.get());
  if (lseek(in, 0, SEEK_SET) != 0) {
    spooled_.emplace();
    spooled_->append_rest(document_.get(), name_);
    in = spooled_->descriptor();
    lseek(in, 0, SEEK_SET);
  }
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw user_error(name_ + ": " + std::strerror(errno));
  pages_.reset(fdopen(ends[0], "rb"));
  // The document is standard input, whose name is harmless, whatever its own name is.
  const int why = drawing_.start("gs",
                                 {"gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-sstdout=%stderr", "-sDEVICE=cups",
                                  "-dcupsColorSpace=19", "-dcupsBitsPerColor=8", "-dcupsColorOrder=0",
                                  "-r" + std::to_string(unsigned(dpi.x)) + "x" + std::to_string(unsigned(dpi.y)),
                                  "-sOutputFile=%stdout", "/dev/stdin"},
                                 in, ends[1], said_.descriptor());
  close(ends[1]);
  if (why == 0) return;
  if (why == ENOENT) {
    throw user_error(name_ + ": is printed with Ghostscript, which is not installed: install the package ghostscript");
  }
  throw user_error(name_ + ": Ghostscript (gs): " + std::strerror(why));
}

void ghostscript::check_end(unsigned pages) {
  if (!drawing_.runs()) return;
  const int status = drawing_.wait();
  const std::string why = complaint();
  if (status != 0 || pages == 0) {
    throw user_error(name_ + ": Ghostscript cannot draw it" + (why.empty() ? "" : ": " + why));
  }
  if (!why.empty())
    std::fprintf(stderr, "vrk: %s: Ghostscript has drawn it, but: %s\n", printable(name_).c_str(), why.c_str());
}

// Of all that it said, the first line about an error.
std::string ghostscript::complaint() const {
  std::string text(1 << 16, '\0');
  const ssize_t count = pread(said_.descriptor(), text.data(), text.size(), 0);
  std::istringstream lines(text.substr(0, std::size_t(std::max<ssize_t>(count, 0))));
  for (std::string line; std::getline(lines, line);) {
    const std::size_t first = line.find_first_not_of(" *");
    if (line.find("rror") != std::string::npos) return printable(line.substr(std::min(first, line.size())));
  }
  return "";
}

}  // namespace vrk::tool
