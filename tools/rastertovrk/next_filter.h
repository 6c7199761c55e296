// The filter that follows in the queue: another driver, which gets our dots and speaks its printer's language.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/processes/child_process.h"

namespace vrk::tool {

// While it lives, what this process writes to standard output goes through the other filter, which writes to what was
// standard output before.
class next_filter {
 public:
  // program: its path, or its name among the filters of CUPS. arguments: of the job, as this filter got them, without a
  // file. Throws user_error when there is no such program.
  next_filter(const std::string& program, std::vector<std::string> arguments);

  // After the last byte. Throws user_error when the other filter fails, which is the reason when writing to it does.
  void finish();

 private:
  std::filesystem::path program_;
  child_process process_;
};

}  // namespace vrk::tool
