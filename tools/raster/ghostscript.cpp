#include "tools/raster/ghostscript.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sstream>
#include <vector>

#include "tools/command_line/printable.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

// How a process begins: its first three files, and signals as they are for a program of its own.
class beginning {
 public:
  beginning(int in, int out, int error) {
    posix_spawn_file_actions_init(&files_);
    posix_spawnattr_init(&signals_);
    posix_spawn_file_actions_adddup2(&files_, in, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files_, out, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&files_, error, STDERR_FILENO);
    sigset_t none, ending;
    sigemptyset(&none);
    sigemptyset(&ending);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) sigaddset(&ending, signal);
    posix_spawnattr_setsigmask(&signals_, &none);
    posix_spawnattr_setsigdefault(&signals_, &ending);
    posix_spawnattr_setflags(&signals_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~beginning() {
    posix_spawn_file_actions_destroy(&files_);
    posix_spawnattr_destroy(&signals_);
  }
  beginning(const beginning&) = delete;
  beginning& operator=(const beginning&) = delete;

  // Returns the reason when there is no process.
  int start(std::vector<std::string> words, pid_t& process) const {
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    return posix_spawnp(&process, arguments[0], &files_, &signals_, arguments.data(), environ);
  }

 private:
  posix_spawn_file_actions_t files_;
  posix_spawnattr_t signals_;
};

}  // namespace

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
  const int why = beginning(in, ends[1], said_.descriptor())
                      .start({"gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-sstdout=%stderr", "-sDEVICE=cups",
                              "-dcupsColorSpace=19", "-dcupsBitsPerColor=8", "-dcupsColorOrder=0",
                              "-r" + std::to_string(unsigned(dpi.x)) + "x" + std::to_string(unsigned(dpi.y)),
                              "-sOutputFile=%stdout", "/dev/stdin"},
                             process_);
  close(ends[1]);
  if (why == 0) return;
  process_ = 0;
  if (why == ENOENT) {
    throw user_error(name_ + ": is printed with Ghostscript, which is not installed: install the package ghostscript");
  }
  throw user_error(name_ + ": Ghostscript (gs): " + std::strerror(why));
}

ghostscript::~ghostscript() {
  if (process_ == 0) return;
  kill(process_, SIGTERM);
  while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
  }
}

void ghostscript::check_end(unsigned pages) {
  if (process_ == 0) return;
  int status = 0;
  while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
  }
  process_ = 0;
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
