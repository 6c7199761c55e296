// Text of unknown origin on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace vrk::tool {

// The text in UTF-8 without control characters, which could make a terminal do things: a byte of one, and a byte that
// is no UTF-8, becomes \xNN.
std::string printable(std::string_view text);

}  // namespace vrk::tool
