// The options of `vrk print` as vendor options of a PAPPL printer: "--filter" is "vrk-filter".
#pragma once

#include <pappl/pappl.h>

#include <string>
#include <vector>

#include "tools/queue/job_options.h"

namespace vrk::tool {

struct vendor_option {
  std::string name;                // "vrk-filter"
  std::string option;              // "filter"
  std::string help;                // what --help says about it
  std::vector<std::string> words;  // all that it may be, where that is a list; behind them is `not_given`
  bool flag;
  bool file;      // may name a file of this machine
  bool repeated;  // several values, with blanks between them
};

// What stands for an option that is not given, where there is a list to choose from; elsewhere that is an empty text.
inline constexpr const char* not_given = "default";

// In the order of --help; at most as many as PAPPL takes.
const std::vector<vendor_option>& vendor_options();

// Adds the names to the record, and to the attributes what each may be and that it is not given.
void add_vendor_options(pappl_pr_driver_data_t& record, ipp_t& attributes);

// Names for people, on PAPPL's pages.
void add_vendor_labels(pappl_system_t* system);

// What the job says, and where it says nothing, its printer. Throws usage_error where a job names a file: only who may
// set the printer's defaults may name those of this machine.
std::vector<job_option> options_of(pappl_job_t* job);

}  // namespace vrk::tool
