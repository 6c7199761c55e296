// Calls into C libraries that report failure by a long jump, for code that reports it by an exception.
#pragma once

#include <csetjmp>
#include <cstdio>
#include <string>

#include "tools/pipeline/user_error.h"

namespace vrk::tool {

// Where a C library's error handler jumps to, and what it had to say.
struct c_failure {
  std::jmp_buf come_back;
  char message[240] = "";

  [[noreturn]] void jump(const char* text) {
    std::snprintf(message, sizeof message, "%s", text);
    std::longjmp(come_back, 1);
  }
};

// Runs `call`, inside which the library may jump. `call` holds no object that needs destruction: a jump passes it by.
template <class Call>
void run_c(c_failure& failure, const std::string& source, const Call& call) {
  if (setjmp(failure.come_back) != 0) throw user_error(source + ": " + failure.message);
  call();
}

}  // namespace vrk::tool
