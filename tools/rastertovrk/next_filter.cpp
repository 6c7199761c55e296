#include "tools/rastertovrk/next_filter.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

std::filesystem::path path_of(const std::string& program) {
  if (program.starts_with('/')) return program;
  const char* const programs = std::getenv("CUPS_SERVERBIN");
  return std::filesystem::path(programs != nullptr ? programs : "/usr/lib/cups") / "filter" / program;
}

}  // namespace

next_filter::next_filter(const std::string& program, std::vector<std::string> arguments) : program_(path_of(program)) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw user_error(std::string("standard output: ") + std::strerror(errno));
  const int why = process_.start(program_, std::move(arguments), ends[0], STDOUT_FILENO, STDERR_FILENO);
  if (why == 0) dup2(ends[1], STDOUT_FILENO);
  close(ends[0]);
  close(ends[1]);
  if (why != 0) throw user_error("VrkNextFilter: " + program_.string() + ": " + std::strerror(why));
}

void next_filter::finish() {
  std::fflush(stdout);
  close(STDOUT_FILENO);  // where the other filter finds the end
  const int status = process_.wait();
  if (WIFSIGNALED(status)) {
    throw user_error(program_.string() + ": was ended by signal " + std::to_string(WTERMSIG(status)));
  }
  if (status != 0)
    throw user_error(program_.string() + ": has failed with status " + std::to_string(WEXITSTATUS(status)));
}

}  // namespace vrk::tool
