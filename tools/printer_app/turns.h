// Raster streams that come at the same time take turns.
#pragma once

#include <pappl/pappl.h>

namespace vrk::tool {

// PAPPL prints a raster stream while it comes. A second one for the same printer it refuses, and can block itself for
// good while it does: it takes locks in the other order there than where it tells what a printer is like. So a request
// that may bring a stream waits here until the printer is free. False when that takes too long.
// To be called on the thread that serves the request, which has its turn until end_turn, its next request or its end.
bool wait_for_turn(pappl_client_t* client);
void end_turn();

}  // namespace vrk::tool
