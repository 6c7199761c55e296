#include "tools/processes/child_process.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <thread>

#include "tools/files/temporary_directory.h"

namespace vrk::tool {
namespace {

std::vector<pid_t> running;  // guarded by hold_off_end()

// How a process begins: its first three files, and its signals.
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
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ}) sigaddset(&ending, signal);
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

  int start(const std::string& program, std::vector<std::string>& words, pid_t& process) const {
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    return posix_spawnp(&process, program.c_str(), &files_, &signals_, arguments.data(), environ);
  }

 private:
  posix_spawn_file_actions_t files_;
  posix_spawnattr_t signals_;
};

// The caller guards `running`. Returns the status.
int collect(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  std::erase(running, process);
  return status;
}

// Until there is something to collect.
void await(pid_t process) {
  siginfo_t info{};
  while (waitid(P_PID, id_t(process), &info, WEXITED | WNOWAIT) < 0 && errno == EINTR) {
  }
}

bool has_ended(pid_t process) {
  siginfo_t info{};
  return waitid(P_PID, id_t(process), &info, WEXITED | WNOWAIT | WNOHANG) != 0 || info.si_pid == process;
}

void end_process(pid_t process) {
  constexpr std::chrono::milliseconds pause(5), patience(2000);
  kill(process, SIGTERM);
  for (std::chrono::milliseconds waited(0); !has_ended(process) && waited < patience; waited += pause) {
    std::this_thread::sleep_for(pause);
  }
  if (!has_ended(process)) kill(process, SIGKILL);
  collect(process);
}

}  // namespace

int child_process::start(const std::string& program, std::vector<std::string> words, int in, int out, int error) {
  const auto lock = hold_off_end();
  const int why = beginning(in, out, error).start(program, words, process_);
  if (why == 0) {
    running.push_back(process_);
  } else {
    process_ = 0;
  }
  return why;
}

int child_process::wait() {
  if (process_ == 0) return 0;
  await(process_);
  const auto lock = hold_off_end();
  const pid_t ended = process_;
  process_ = 0;
  return collect(ended);
}

void child_process::end() {
  if (process_ == 0) return;
  const auto lock = hold_off_end();
  end_process(process_);
  process_ = 0;
}

void end_child_processes() {
  while (!running.empty()) end_process(running.back());
}

}  // namespace vrk::tool
