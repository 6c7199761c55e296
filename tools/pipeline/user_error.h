// An error that the user of the program can put right.
#pragma once

#include <stdexcept>
#include <string>

namespace vrk::tool {

// The text is one sentence, which the program prints before it ends.
struct user_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The command line itself is wrong, whatever the files hold.
struct usage_error : user_error {
  using user_error::user_error;
};

}  // namespace vrk::tool
