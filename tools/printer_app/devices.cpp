#include "tools/printer_app/devices.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "tools/pipeline/user_error.h"
#include "tools/printer_app/application.h"

namespace vrk::tool {
namespace {

namespace fs = std::filesystem;

struct device_uri {
  char scheme[32], user[32], host[256], path[1024];
  int port = 0;

  explicit device_uri(const char* text)
      : correct_(httpSeparateURI(HTTP_URI_CODING_ALL, text, scheme, sizeof scheme, user, sizeof user, host, sizeof host,
                                 &port, path, sizeof path) >= HTTP_URI_STATUS_OK) {}

  bool is(const char* name) const { return correct_ && std::strcmp(scheme, name) == 0; }

 private:
  bool correct_;
};

std::optional<fs::path> directory_in(const char* text) {
  const device_uri uri(text);
  if (!uri.is("file")) return {};
  return uri.path;
}

// A queue waits for a device that does not open, and goes on when it does.
bool open_directory(pappl_device_t* device, const char* uri, const char*) {
  const auto directory = directory_in(uri);
  std::error_code failed;
  if (directory) fs::create_directories(*directory, failed);
  if (directory && !failed && access(directory->c_str(), W_OK | X_OK) == 0) return true;
  papplDeviceError(device, "%s: expected a directory that can be written to", uri);
  return false;
}

void close_directory(pappl_device_t*) {}

ssize_t write_nothing(pappl_device_t*, const void*, std::size_t) { return -1; }

// For the page "Add Printer".
bool list_directories(pappl_device_cb_t found, void* data, pappl_deverror_cb_t, void*) {
  std::string uri = "file://";
  uri += (state_directory() / "prints").string();
  return found("Directory", uri.c_str(), "MFG:vrk;MDL:directory;", data);
}

// The socket is the device's data, plus 1: 0 is for none.
void* as_data(int socket) { return reinterpret_cast<void*>(std::intptr_t{socket} + 1); }
int socket_of(pappl_device_t* device) { return int(reinterpret_cast<std::intptr_t>(papplDeviceGetData(device)) - 1); }

bool open_socket(pappl_device_t* device, const char* text, const char*) {
  constexpr int longest_wait = 10000;  // ms
  const device_uri uri(text);
  const std::string port = std::to_string(uri.port != 0 ? uri.port : 9100);
  http_addrlist_t* const found = httpAddrGetList(uri.host, AF_UNSPEC, port.c_str());
  int socket = -1;
  if (found != nullptr) httpAddrConnect2(found, &socket, longest_wait, nullptr);
  httpAddrFreeList(found);
  if (socket < 0) papplDeviceError(device, "%s: does not answer", text);
  papplDeviceSetData(device, as_data(socket));
  return socket >= 0;
}

void close_socket(pappl_device_t* device) {
  if (socket_of(device) >= 0) close(socket_of(device));
  papplDeviceSetData(device, as_data(-1));
}

ssize_t write_to_socket(pappl_device_t* device, const void* bytes, std::size_t count) {
  const auto* const from = static_cast<const char*>(bytes);
  for (std::size_t done = 0; done < count;) {
    const ssize_t written = send(socket_of(device), from + done, count - done, MSG_NOSIGNAL);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return -1;
    done += std::size_t(written);
  }
  return ssize_t(count);
}

}  // namespace

void add_devices() {
  papplDeviceAddScheme("file", PAPPL_DEVTYPE_FILE, list_directories, open_directory, close_directory, nullptr,
                       write_nothing, nullptr, nullptr);
  papplDeviceAddScheme("socket", PAPPL_DEVTYPE_SOCKET, nullptr, open_socket, close_socket, nullptr, write_to_socket,
                       nullptr, nullptr);
}

std::optional<fs::path> directory_of(pappl_printer_t* printer) {
  return directory_in(papplPrinterGetDeviceURI(printer));
}

job_directory::job_directory(const fs::path& parent, pappl_printer_t* printer, pappl_job_t* job) {
  std::array<char, 1024> resource{};
  papplPrinterGetPath(printer, nullptr, resource.data(), resource.size());
  std::array<char, 16> number{};
  std::snprintf(number.data(), number.size(), "-%06d", papplJobGetID(job));
  const std::string name = fs::path(resource.data()).filename().string() + number.data();
  std::error_code failed;
  for (unsigned again = 1; path_.empty() && !failed; ++again) {  // numbers begin anew when the state is lost
    fs::path path = parent / name;
    if (again != 1) (path += ".") += std::to_string(again);
    if (fs::create_directory(path, failed)) path_ = path;
  }
  if (failed) throw user_error(parent.string() + ": " + failed.message());
}

job_directory::~job_directory() {
  std::error_code not_empty;
  fs::remove(path_, not_empty);
}

}  // namespace vrk::tool
