// The page "Last Print" of a printer.
#pragma once

#include <pappl/pappl.h>

namespace vrk::tool {

// A callback of PAPPL for a new printer: adds the page, its pictures and a link to it.
void add_last_print_page(pappl_printer_t* printer, void*);

}  // namespace vrk::tool
