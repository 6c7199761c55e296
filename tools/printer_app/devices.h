// Where prints go: directories, and printers that take a stream over the network.
#pragma once

#include <pappl/pappl.h>

#include <filesystem>
#include <optional>

namespace vrk::tool {

// file:///DIRECTORY and socket://HOST[:PORT]. PAPPL has schemes of these names and leaves out all of its own when there
// are some already. Its file scheme makes a file of the job's name.
void add_devices();

// None where the printer has another device.
std::optional<std::filesystem::path> directory_of(pappl_printer_t* printer);

// A new directory for a job, in that of its printer. The destructor removes it if it is empty.
class job_directory {
 public:
  job_directory(const std::filesystem::path& parent, pappl_printer_t* printer, pappl_job_t* job);
  ~job_directory();
  job_directory(const job_directory&) = delete;
  job_directory& operator=(const job_directory&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace vrk::tool
