#include "tools/printer_app/system.h"

#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <string>

#include "tools/pipeline/user_error.h"
#include "tools/printer_app/access.h"
#include "tools/printer_app/application.h"
#include "tools/printer_app/driver.h"
#include "tools/printer_app/file_job.h"
#include "tools/printer_app/guarded.h"
#include "tools/printer_app/last_print_page.h"
#include "tools/printer_app/style.h"
#include "tools/printer_app/vendor_options.h"
#include "tools/sandbox/sandbox.h"

namespace vrk::tool {
namespace {

namespace fs = std::filesystem;

// Each takes a thread and, with a request half read, about 80 KB.
constexpr int most_clients = 2048;

// The words of -o.
class server_options {
 public:
  server_options(int count, cups_option_t* options) : count_(count), options_(options) {}

  std::string text(const char* name, const std::string& usual = "") const {
    const char* const value = cupsGetOption(name, count_, options_);
    return value != nullptr ? value : usual;
  }
  bool has(const char* name) const { return cupsGetOption(name, count_, options_) != nullptr; }

 private:
  int count_;
  cups_option_t* options_;
};

int read_port(const std::string& text) {
  int port = 0;
  const auto [end, wrong] = std::from_chars(text.data(), text.data() + text.size(), port);
  if (wrong == std::errc() && *end == '\0' && port >= 0 && port <= 65535) return port;
  throw user_error("server-port " + text + ": expected 0 (any that is free) to 65535");
}

pappl_loglevel_t read_log_level(const std::string& name) {
  constexpr const char* names[] = {"debug", "info", "warn", "error", "fatal"};  // in the order of PAPPL
  for (int level = 0; level < 5; ++level) {
    if (name == names[level]) return pappl_loglevel_t(PAPPL_LOGLEVEL_DEBUG + level);
  }
  throw user_error("log-level " + name + ": expected debug, info, warn, error or fatal");
}

fs::path usual_state_directory() {
  if (const char* const snap = std::getenv("SNAP_COMMON")) return fs::path(snap) / application_name;
  if (getuid() == 0) return fs::path("/var/lib") / application_name;
  if (const char* const state = std::getenv("XDG_STATE_HOME")) return fs::path(state) / application_name;
  const char* const home = std::getenv("HOME");
  if (home == nullptr) throw user_error("HOME is not set: say where to keep jobs with -o spool-directory=DIR");
  return fs::path(home) / ".local/state" / application_name;
}

bool save_state(pappl_system_t* system, void*) {
  return papplSystemSaveState(system, (state_directory() / "printers.state").c_str());
}

void prepare_state_directory(const fs::path& directory) {
  set_state_directory(fs::absolute(directory));
  fs::create_directories(state_directory() / "prints");  // a device for those who have none
  fs::permissions(state_directory(), fs::perms::owner_all);
  fs::remove_all(work_directory());  // what a run that was killed has left
}

// Not while a printer is deleted: PAPPL holds its locks then.
void forget_deleted_printers(pappl_system_t* system) {
  std::error_code none;
  for (const fs::directory_entry& print : fs::directory_iterator(state_directory() / "last", none)) {
    const int number = std::atoi(print.path().filename().c_str());
    if (papplSystemFindPrinter(system, nullptr, number, nullptr) == nullptr) fs::remove_all(print.path(), none);
  }
}

// Where it listens. Returns false when the port is not free.
bool add_listeners(pappl_system_t* system, const std::string& address) {
  return papplSystemAddListeners(system, address == "*" ? nullptr : address.c_str());
}

pappl_system_t* create(const server_options& options) {
  const std::string address = options.text("listen-hostname", "localhost");
  const bool local = is_loopback(address) || options.has("private-server");
  const std::string password =
      options.has("password-file") ? read_password(options.text("password-file")) : std::string();
  if (!local && password.empty()) {
    throw user_error("listen-hostname " + address +
                     ": other machines can reach it, which takes a password for whoever " +
                     "changes printers: add -o password-file=FILE");
  }
  prepare_state_directory(options.has("spool-directory") ? fs::path(options.text("spool-directory"))
                                                         : usual_state_directory());
  const std::string log = options.text("log-file", "-");
  const pappl_soptions_t usual = PAPPL_SOPTIONS_MULTI_QUEUE | PAPPL_SOPTIONS_WEB_INTERFACE | PAPPL_SOPTIONS_WEB_LOG;
  pappl_system_t* const system = papplSystemCreate(
      usual | (local ? PAPPL_SOPTIONS_NO_TLS : PAPPL_SOPTIONS_WEB_REMOTE | PAPPL_SOPTIONS_WEB_TLS), application_name,
      read_port(options.text("server-port", "0")), "_print,_universal", (state_directory() / "jobs").c_str(),
      log.c_str(), read_log_level(options.text("log-level", "info")), nullptr, false);
  if (system == nullptr) throw user_error((state_directory() / "jobs").string() + ": PAPPL cannot keep jobs there");
  if (options.has("server-hostname")) papplSystemSetHostName(system, options.text("server-hostname").c_str());
  papplSystemSetMaxClients(system, most_clients);
  set_access(system, password);
  add_file_filters(system);
  add_vendor_labels(system);
  add_style(system);
  papplSystemSetPrinterDrivers(system, int(drivers().size()), drivers().data(), nullptr, add_last_print_page,
                               describe_printer, nullptr);
  papplSystemLoadState(system, (state_directory() / "printers.state").c_str());
  forget_deleted_printers(system);
  papplSystemSetSaveCallback(system, save_state, nullptr);
  if (!options.has("private-server")) {
    if (!add_listeners(system, address)) {
      papplSystemDelete(system);
      throw user_error(address + ": cannot listen there, is the port in use?");
    }
    std::printf("Listening on http://%s:%d/\n", address == "*" ? "localhost" : address.c_str(),
                papplSystemGetHostPort(system));
    std::fflush(stdout);
  }
  return system;
}

}  // namespace

pappl_system_t* make_system(int count, cups_option_t* options, void*) {
  pappl_system_t* system = nullptr;
  tell_without_sandbox(application_name);
  const std::string why = complaint_of([&] { system = create(server_options(count, options)); });
  if (!why.empty()) std::fprintf(stderr, "%s: %s\n", application_name, printable(why).c_str());
  return system;
}

void show_usage(void*) {
  std::printf(R"(Usage: %s COMMAND [OPTIONS]

A printer on the network that prints with the vrk library.

  server           run it
  add              add a printer: -d NAME -m vrk -v DEVICE
  submit           print a file: -d NAME [-n COPIES] [-o OPTION=VALUE ...] FILE
  status           show what it is doing
  options          show what a printer's jobs may say
  modify, delete, default, printers, pause, resume, jobs, cancel, devices, drivers, shutdown

Devices: file:///DIRECTORY (the files of vrk print, a directory for each job), socket://HOST[:PORT] (a raster stream).

Options of server:
  -o listen-hostname=NAME   address to listen on, * for all (default localhost); others than this machine's own take a
                            password file
  -o server-port=PORT       (default: the first free one from 8000 on)
  -o password-file=FILE     its first line is the password for changing printers and looking at prints
  -o spool-directory=DIR    for jobs and printers (default %s)
  -o log-file=FILE          or - for standard error (default), or syslog
  -o log-level=LEVEL        debug, info (default), warn, error, fatal
  -o server-hostname=NAME   name of this machine in addresses
)",
              application_name, "/var/lib/vrk-printer-app for root, else ~/.local/state/vrk-printer-app");
}

}  // namespace vrk::tool
