#include "tools/printer_app/turns.h"

#include <chrono>
#include <map>
#include <mutex>
#include <string_view>
#include <thread>

namespace vrk::tool {
namespace {

using clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto longest_wait = 20s;
constexpr auto look_every = 20ms;
constexpr auto longest_preparation = 2s;  // until a stream that has its turn is a job that prints

std::mutex mutex;
std::map<int, clock::time_point> turns;  // since when somebody has it, by printer; guarded by the mutex

struct own_turn {
  int printer = 0;
  clock::time_point since{};

  ~own_turn() { end(); }
  void end() {
    const std::lock_guard lock(mutex);
    const auto turn = turns.find(printer);
    if (turn != turns.end() && turn->second == since) turns.erase(turn);
    printer = 0;
  }
};
thread_local own_turn own;

bool may_bring_a_stream(pappl_client_t* client) {
  const ipp_op_t operation = ippGetOperation(papplClientGetRequest(client));
  if (operation != IPP_OP_PRINT_JOB && operation != IPP_OP_SEND_DOCUMENT) return false;
  const char* const named =
      ippGetString(ippFindAttribute(papplClientGetRequest(client), "document-format", IPP_TAG_MIMETYPE), 0, nullptr);
  const std::string_view format = named != nullptr ? named : "application/octet-stream";
  return format == "image/pwg-raster" || format == "image/urf" || format == "application/octet-stream";
}

bool prints(pappl_printer_t* printer) {
  bool found = false;
  papplPrinterIterateActiveJobs(
      printer,
      [](pappl_job_t* job, void* to) {
        if (papplJobGetState(job) == IPP_JSTATE_PROCESSING) *static_cast<bool*>(to) = true;
      },
      &found, 1, 0);
  return found;
}

bool take_turn(pappl_printer_t* printer) {
  const bool busy = prints(printer);
  const int number = papplPrinterGetID(printer);
  const std::lock_guard lock(mutex);
  const auto other = turns.find(number);
  if (busy || (other != turns.end() && clock::now() - other->second < longest_preparation)) return false;
  own.printer = number;
  own.since = turns[number] = clock::now();
  return true;
}

}  // namespace

bool wait_for_turn(pappl_client_t* client) {
  own.end();
  pappl_printer_t* const printer = papplClientGetPrinter(client);
  if (printer == nullptr || !may_bring_a_stream(client)) return true;
  for (const auto until = clock::now() + longest_wait; clock::now() < until; std::this_thread::sleep_for(look_every)) {
    if (take_turn(printer)) return true;
  }
  return false;
}

void end_turn() { own.end(); }

}  // namespace vrk::tool
