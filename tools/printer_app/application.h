// What all printers of the application share.
#pragma once

#include <pappl/pappl.h>

#include <filesystem>

namespace vrk::tool {

inline constexpr const char* application_name = "vrk-printer-app";

// Where the application keeps what it knows: PAPPL's jobs and printers, and below it the last print of every printer.
// Set before there is a printer.
void set_state_directory(const std::filesystem::path& directory);
const std::filesystem::path& state_directory();

std::filesystem::path last_print_directory(pappl_printer_t* printer);

// For files of pages on their way to a printer.
std::filesystem::path work_directory();

}  // namespace vrk::tool
