// A table image with the name that messages call it by.
#pragma once

#include <string>

#include "kit/explain.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {

struct table {
  std::string name;
  kit::bytes image;

  std::uint32_t size() const { return std::uint32_t(image.size()); }
};

[[noreturn]] inline void refuse(const table& refused, const std::string& why) {
  throw user_error(refused.name + ": " + why);
}

// why: may be that the kit found nothing wrong.
[[noreturn]] inline void refuse(const table& refused, const kit::refusal& why) {
  refuse(refused, why ? why.text() : "is refused: its header is correct, the data behind it are not");
}

}  // namespace vrk::tool
