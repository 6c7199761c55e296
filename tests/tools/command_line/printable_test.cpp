// Names and comments of files on a terminal.
#include "tools/command_line/printable.h"

#include <gtest/gtest.h>

namespace {

TEST(printable, leaves_text_and_escapes_what_a_terminal_obeys) {
  const struct {
    std::string text, shown;
  } cases[] = {{"a photo ~.jpg", "a photo ~.jpg"},
               {"na\xC3\xAFve \xE2\x82\xAC \xF0\x9F\x98\x80", "na\xC3\xAFve \xE2\x82\xAC \xF0\x9F\x98\x80"},
               {"\x1B[2J\n\x7F", "\\x1B[2J\\x0A\\x7F"},
               {"\xC2\x9B"
                "2J",
                "\\xC2\\x9B2J"},                                       // a control character of two bytes
               {"\xE9t\xC3", "\\xE9t\\xC3"},                           // Latin-1, and cut off
               {"\xC0\xAF\xED\xA0\x80", "\\xC0\\xAF\\xED\\xA0\\x80"},  // too long, and half of a pair
               {std::string("\0", 1), "\\x00"}};
  for (const auto& c : cases) EXPECT_EQ(vrk::tool::printable(c.text), c.shown);
}

}  // namespace
