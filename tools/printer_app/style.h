// How the pages look.
#pragma once

#include <pappl/pappl.h>

namespace vrk::tool {

// Before the system runs: PAPPL's own style fetches typefaces from the internet, so that every page tells who prints to
// others and waits where there is no network.
void add_style(pappl_system_t* system);

}  // namespace vrk::tool
