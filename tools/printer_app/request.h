// Requests of clients that send less than they have announced.
#pragma once

#include <pappl/pappl.h>

#include <string>

namespace vrk::tool {

// From now on a read of this client's request ends when nothing has come for a while, and at once when the request is
// complete: PAPPL goes on to read lines that a raster stream has announced, and would wait for the client to hang up.
// To be called on the thread that serves it.
void watch_request(pappl_client_t* client);

// Answers the request that this thread serves where PAPPL takes it for answered, having read beyond its end. Without an
// answer clients send their job again and again.
void answer_overread_request(const std::string& why);

}  // namespace vrk::tool
