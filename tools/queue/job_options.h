// Options of a job in a print queue: those of `vrk print`, by name.
#pragma once

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

#include "tools/image/image_argument.h"
#include "tools/page/placement.h"
#include "tools/print/print_options.h"

namespace vrk::tool {

struct job_options {
  print_options print{};
  page_options page{};       // for jobs that are pictures
  image_argument picture{};  // without a path: the job has its own
};

// A long option of `vrk print` without its dashes. A flag has the value "true" or "false".
struct job_option {
  std::string name, value;
};

// Whether a job comes as pages of a size of their own, or as a picture that is brought to one.
enum class job_kind { pages, picture };

// All options that a settings file of `vrk print` may hold, and --settings. Those that a job has no use for (see
// is_job_option) count for nothing. For who shows the others: see shown_options and facts_of. to: lives as long as the
// command
void add_job_options(CLI::App& command, job_options& to);

// Whether such a job itself can have this option, one of add_job_options.
bool is_job_option(const CLI::Option& option, job_kind kind);

// The name of the option that is written in one of the ways of print queues: "vrk-ink-limit", "VrkInkLimit",
// "ink-limit". None when a job has no such option.
std::optional<std::string> job_option_name(const std::string& written, job_kind kind);

// Options that may be given several times (curve, post, blob, media-table) are repeated. What counts, the first one
// first: the job, its settings file, what its queue says, the queue's settings file. Throws usage_error or user_error
// with the sentence that `vrk print` would say, which names the option.
job_options read_job_options(const std::vector<job_option>& job, job_kind kind,
                             const std::vector<job_option>& queue = {});

}  // namespace vrk::tool
