// Runs while the program is built: writes the samples of the kit's ink grids as arrays for made_grids.cpp.
#include <cstdio>

#include "kit/color_grids.h"

namespace {

bool write(std::FILE* to, const char* name, const vrk::kit::color_grid& grid) {
  std::fprintf(to, "constexpr std::uint16_t %s[] = {", name);
  for (const unsigned sample : grid.samples) std::fprintf(to, "%u,", sample);
  return std::fprintf(to, "};\n") > 0;
}

}  // namespace

int main(int argc, char** argv) {
  std::FILE* const to = argc == 2 ? std::fopen(argv[1], "w") : nullptr;
  if (to == nullptr) return 1;
  const bool written = write(to, "four_inks", vrk::kit::ink_grid(4)) && write(to, "six_inks", vrk::kit::ink_grid(6)) &&
                       write(to, "inks_to_split", vrk::kit::split_ink_grid());
  return std::fclose(to) == 0 && written ? 0 : 1;
}
