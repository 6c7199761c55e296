// What a printer remembers of its last page: for its page "Last Print".
#pragma once

#include <filesystem>
#include <string>

#include "tools/inspect/description.h"
#include "tools/print/print_report.h"
#include "tools/print/print_tables.h"

namespace vrk::tool {

struct printed_job {
  int number;
  std::string name;
};

// Replaces what is there by the pictures of the page and facts.json. page: of the job, from 1
void keep_last_print(const std::filesystem::path& directory, const printed_job& job, unsigned page,
                     const print_report& report, const print_tables& tables);

// The facts: "job", "name", "page", "printed", "width", "height", "dpi", "planes" (each with "ink" and "coverage") and
// "tables" (each with "role", "name" and "holds", what `vrk inspect` says). Null when nothing was printed.
tree facts_of_last_print(const std::filesystem::path& directory);

}  // namespace vrk::tool
