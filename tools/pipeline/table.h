// A table image with the name that messages call it by.
#pragma once

#include <string>

#include "kit/bytes.h"

namespace vrk::tool {

struct table {
  std::string name;
  kit::bytes image;

  std::uint32_t size() const { return std::uint32_t(image.size()); }
};

}  // namespace vrk::tool
