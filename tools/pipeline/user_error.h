// The one exception of the program: something its user can put right, told in one sentence.
#pragma once

#include <stdexcept>
#include <string>

namespace vrk::tool {

struct user_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace vrk::tool
