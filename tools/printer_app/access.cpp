#include "tools/printer_app/access.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <string_view>

#include "tools/pipeline/user_error.h"
#include "tools/printer_app/request.h"
#include "tools/printer_app/turns.h"

namespace vrk::tool {
namespace {

// PAPPL asks with this name when it is about the printers themselves, and with none when it is about printing.
constexpr const char* administration = "none";

std::string password;

// In a time that does not depend on what is equal.
bool is_password(std::string_view given) {
  unsigned differs = unsigned(given.size() ^ password.size());
  for (std::size_t i = 0; i < given.size(); ++i) {
    differs |= unsigned(given[i] ^ password[password.empty() ? 0 : i % password.size()]);
  }
  return differs == 0;
}

// Of "Basic": the user's name does not matter.
bool gives_password(pappl_client_t* client) {
  const std::string_view said = httpGetField(papplClientGetHTTP(client), HTTP_FIELD_AUTHORIZATION);
  constexpr std::string_view basic = "Basic ";
  if (!said.starts_with(basic)) return false;
  std::array<char, 512> both{};
  int size = int(both.size());
  httpDecode64_2(both.data(), &size, said.data() + basic.size());
  const std::string_view words(both.data());
  const std::size_t colon = words.find(':');
  return colon != words.npos && is_password(words.substr(colon + 1));
}

http_status_t authorize(pappl_client_t* client, const char* group, gid_t, void*) {
  watch_request(client);
  if (group == nullptr) return wait_for_turn(client) ? HTTP_STATUS_CONTINUE : HTTP_STATUS_SERVICE_UNAVAILABLE;
  if (password.empty()) return HTTP_STATUS_CONTINUE;
  return gives_password(client) ? HTTP_STATUS_CONTINUE : HTTP_STATUS_UNAUTHORIZED;
}

}  // namespace

bool is_loopback(const std::string& address) {
  return address == "localhost" || address.starts_with("127.") || address == "[::1]";
}

std::string read_password(const std::string& path) {
  struct stat found {};
  if (stat(path.c_str(), &found) != 0) throw user_error(path + ": " + std::strerror(errno));
  if ((found.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
    throw user_error(path + ": others may read it, expected a file of its owner alone (chmod 600)");
  }
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  if (line.empty()) throw user_error(path + ": has no password in its first line");
  return line;
}

void set_access(pappl_system_t* system, const std::string& word) {
  password = word;
  papplSystemSetAdminGroup(system, administration);
  papplSystemSetAuthCallback(system, "Basic", authorize, nullptr);
}

}  // namespace vrk::tool
