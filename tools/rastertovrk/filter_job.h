// One job of the filter.
#pragma once

#include <string>
#include <vector>

namespace vrk::tool {

// arguments: as CUPS gives them to filters: the program's name, the job's number, user, title, copies, options, and a
// file where the job does not come through standard input. Tells CUPS on standard error how far it is. Throws
// user_error.
void print_filter_job(const std::vector<std::string>& arguments);

}  // namespace vrk::tool
