// A program that this one runs, without a shell.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace vrk::tool {

// It ends with the object, and with this process when a signal ends that (see ending_signals): by SIGTERM, and by
// SIGKILL when that does not help.
class child_process {
 public:
  child_process() = default;
  ~child_process() { end(); }
  child_process(const child_process&) = delete;
  child_process& operator=(const child_process&) = delete;

  // program: a path, or a name that is looked for in PATH. words: what it finds as its arguments, its name first. The
  // descriptors become its first three files; signals are as for a program of its own. Returns 0, or the reason why
  // there is no process.
  int start(const std::string& program, std::vector<std::string> words, int in, int out, int error);

  bool runs() const { return process_ != 0; }  // or has not been waited for
  int wait();                                  // until it ends; returns its status, as waitpid. 0 where none runs
  void end();

 private:
  pid_t process_ = 0;
};

// Ends all of them. The caller holds hold_off_end() and then ends this process.
void end_child_processes();

}  // namespace vrk::tool
