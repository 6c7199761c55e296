#include <vrk.h>

#include <csignal>
#include <string>

#include "tools/printer_app/application.h"
#include "tools/printer_app/devices.h"
#include "tools/printer_app/driver.h"
#include "tools/printer_app/system.h"

int main(int argc, char** argv) {
  using namespace vrk::tool;
  std::signal(SIGPIPE, SIG_IGN);  // of a printer or a client that is gone
  add_devices();
  const std::string footer = std::string(application_name) + " " + vrk_get_version();  // PAPPL needs one
  return papplMainloop(argc, argv, vrk_get_version(), footer.c_str(), int(drivers().size()), drivers().data(), nullptr,
                       describe_printer, nullptr, nullptr, make_system, show_usage, nullptr);
}
