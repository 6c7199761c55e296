// Who may do what, from where.
#pragma once

#include <pappl/pappl.h>

#include <string>

namespace vrk::tool {

// Whether an address to listen on belongs to this machine alone.
bool is_loopback(const std::string& address);

// The first line of the file. Throws user_error when there is none, or others than its owner may read it.
std::string read_password(const std::string& path);

// Everyone who reaches the application may print. Who changes printers or looks at prints needs the password; where
// there is none (empty), nobody from other machines can reach it. From other machines PAPPL asks for encryption.
void set_access(pappl_system_t* system, const std::string& password);

}  // namespace vrk::tool
