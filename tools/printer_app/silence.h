// Clients that stop talking in the middle of a request.
#pragma once

#include <pappl/pappl.h>

namespace vrk::tool {

// From now on a read of this client's request ends when nothing has come for a while, and at once when the request is
// complete: PAPPL goes on to read lines that a raster stream has announced, and would wait for the client to hang up.
void limit_silence(pappl_client_t* client);

}  // namespace vrk::tool
