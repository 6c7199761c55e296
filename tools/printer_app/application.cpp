#include "tools/printer_app/application.h"

#include <string>

namespace vrk::tool {
namespace {

std::filesystem::path state;

}  // namespace

void set_state_directory(const std::filesystem::path& directory) { state = directory; }

const std::filesystem::path& state_directory() { return state; }

std::filesystem::path last_print_directory(pappl_printer_t* printer) {
  return state / "last" / std::to_string(papplPrinterGetID(printer));
}

std::filesystem::path work_directory() { return state / "work"; }

}  // namespace vrk::tool
