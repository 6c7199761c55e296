// Calls into C libraries that report failure by a long jump, for code that reports it by an exception.
#pragma once

#include <csetjmp>
#include <cstdio>
#include <string>

#include "tools/pipeline/user_error.h"

namespace vrk::tool {

// Where the error handler of a C library jumps to, and its message.
struct c_failure {
  std::jmp_buf come_back;
  char message[240] = "";

  [[noreturn]] void jump(const char* text) {
    std::snprintf(message, sizeof message, "%s", text);
    std::longjmp(come_back, 1);
  }
};

// Runs `call`, inside which the library may jump. `call` must hold no object with a destructor: a jump skips it.
template <class Call>
void run_c(c_failure& failure, const std::string& source, const Call& call) {
  if (setjmp(failure.come_back) != 0) throw user_error(source + ": " + failure.message);
  call();
}

}  // namespace vrk::tool
