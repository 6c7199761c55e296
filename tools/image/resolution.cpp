#include "tools/image/resolution.h"

#include <cstdio>

namespace vrk::tool {

std::string text_of(resolution dpi) {
  char text[64];
  std::snprintf(text, sizeof text, dpi.x == dpi.y ? "%.6g" : "%.6g x %.6g", dpi.x, dpi.y);
  return text;
}

}  // namespace vrk::tool
