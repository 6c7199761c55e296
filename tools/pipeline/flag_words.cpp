#include "tools/pipeline/flag_words.h"

#include <vrk.h>

namespace vrk::tool {

std::vector<std::string> flag_words(std::uint32_t flags, const char* precision) {
  const struct {
    std::uint32_t flag;
    const char* meaning;
  } words[] = {{VRK_IN16, "16-bit input"},
               {VRK_PREC10, precision},
               {VRK_OUT16, "16-bit output"},
               {VRK_COMPOSE, "one table a channel"},
               {VRK_INVERT, "inverted"},
               {VRK_RANDOM4, "random codes of a level"},
               {VRK_K_CODE3, "three-level codes for K"}};
  std::vector<std::string> meant;
  for (const auto& [flag, meaning] : words) {
    if ((flags & flag) != 0) meant.emplace_back(meaning);
  }
  return meant;
}

}  // namespace vrk::tool
