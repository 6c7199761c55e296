// The driver: what PAPPL tells the world about a printer of this application.
#pragma once

#include <pappl/pappl.h>

#include <span>

namespace vrk::tool {

std::span<pappl_pr_driver_t> drivers();

// A callback of PAPPL: fills the record of a new printer.
bool describe_printer(pappl_system_t* system, const char* driver, const char* device, const char* device_id,
                      pappl_pr_driver_data_t* record, ipp_t** attributes, void*);

}  // namespace vrk::tool
