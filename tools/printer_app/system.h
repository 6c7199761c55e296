// The application as PAPPL runs it: where it listens, what it prints, what it remembers.
#pragma once

#include <pappl/pappl.h>

namespace vrk::tool {

// A callback of PAPPL, for the command "server". Null, with a sentence on standard error, when it cannot be.
pappl_system_t* make_system(int count, cups_option_t* options, void*);

// What --help says.
void show_usage(void*);

}  // namespace vrk::tool
