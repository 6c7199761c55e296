#include "tools/printer_app/silence.h"

#include <sys/socket.h>

#include <ctime>

namespace vrk::tool {
namespace {

constexpr double look_every = 0.1;           // s
constexpr std::time_t longest_silence = 30;  // s

// A callback of libcups: whether it should wait on.
int keep_waiting(http_t* http, void*) {
  const bool complete = httpGetState(http) != HTTP_STATE_POST_RECV;
  if (!complete && std::time(nullptr) - httpGetActivity(http) < longest_silence) return 1;
  shutdown(httpGetFd(http), SHUT_RD);  // the reads that follow, one for each missing line, do not wait again
  return 0;
}

}  // namespace

void limit_silence(pappl_client_t* client) {
  httpSetTimeout(papplClientGetHTTP(client), look_every, keep_waiting, nullptr);
}

}  // namespace vrk::tool
