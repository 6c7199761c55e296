#include "tools/printer_app/request.h"

#include <sys/socket.h>

#include <ctime>

#include "tools/printer_app/guarded.h"

namespace vrk::tool {
namespace {

constexpr double look_every = 0.1;           // s
constexpr std::time_t longest_silence = 30;  // s

thread_local pappl_client_t* served = nullptr;  // PAPPL has a thread for every connection

// A callback of libcups: whether it should wait on.
int keep_waiting(http_t* http, void*) {
  const bool complete = httpGetState(http) != HTTP_STATE_POST_RECV;
  if (!complete && std::time(nullptr) - httpGetActivity(http) < longest_silence) return 1;
  shutdown(httpGetFd(http), SHUT_RD);  // the reads that follow, one for each missing line, do not wait again
  return 0;
}

}  // namespace

void watch_request(pappl_client_t* client) {
  served = client;
  httpSetTimeout(papplClientGetHTTP(client), look_every, keep_waiting, nullptr);
}

void answer_overread_request(const std::string& why) {
  if (served == nullptr || httpGetState(papplClientGetHTTP(served)) != HTTP_STATE_WAITING) return;
  const std::string said = said_of(why);
  ipp_t* const answer = papplClientRespondIPP(served, IPP_STATUS_ERROR_DOCUMENT_FORMAT_ERROR, "%s", said.c_str());
  papplClientRespond(served, HTTP_STATUS_OK, nullptr, "application/ipp", 0, ippLength(answer));
}

}  // namespace vrk::tool
