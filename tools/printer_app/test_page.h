// The page that "Print Test Page" prints.
#pragma once

#include <pappl/pappl.h>

namespace vrk::tool {

// A callback of PAPPL: the path of the built-in sample page as a picture.
const char* make_test_page(pappl_printer_t* printer, char* path, std::size_t size);

}  // namespace vrk::tool
