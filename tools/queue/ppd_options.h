// What a queue's PPD file says about jobs, and what a job says in the words of the PPD file.
#pragma once

#include <string>
#include <vector>

#include "tools/queue/job_options.h"

namespace vrk::tool {

struct queue_options {
  std::vector<job_option> job{};    // what the job says
  std::vector<job_option> queue{};  // what the PPD file says: default choices, and attributes
  std::string next_filter{};        // VrkNextFilter; empty: none
};

// Of PPD files, everything that begins with Vrk counts; a choice Default says nothing, and the translation of
// VrkMediaTable's keyword is a type of media: *VrkMediaTable Glossy: "FILE:SELECTOR=VALUE". Of jobs, options of the PPD
// file, options that begin with vrk, and others that vrk print has. path: of the PPD file, empty without one. options:
// as CUPS hands them to filters. Throws user_error.
queue_options read_queue_options(const std::string& path, const std::string& options);

}  // namespace vrk::tool
