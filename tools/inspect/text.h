// Trees of named values as lines of text.
#pragma once

#include "tools/inspect/description.h"

namespace vrk::tool {

// One line for a value, or for several short ones; long lists of numbers are cut. Every line begins with `margin`.
std::string text_of(const tree& told, const std::string& margin = "");

}  // namespace vrk::tool
