// Numbers of the command line.
#pragma once

#include <CLI/CLI.hpp>

#include <cmath>

namespace vrk::tool {

// CLI::Range lets "nan" pass.
inline CLI::Validator finite_range(double first, double last) {
  const std::string range = "a number from " + CLI::detail::to_string(first) + " to " + CLI::detail::to_string(last);
  return {[=](const std::string& text) {
            double value = 0;
            const bool fits = CLI::detail::lexical_cast(text, value) && value >= first && value <= last;
            return fits ? std::string() : "expected " + range + ", not " + text;
          },
          range};
}

}  // namespace vrk::tool
