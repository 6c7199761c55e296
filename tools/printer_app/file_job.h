// Jobs that come as files: pictures, documents and CUPS raster.
#pragma once

#include <pappl/pappl.h>

namespace vrk::tool {

// What the printers are said to take: files become it on their way, and a file that is it already is printed as it is.
inline constexpr const char* device_format = "application/vnd.cups-raster";

// The kinds of files that are printed: PAPPL's own filters would load them whole and scale them in another way.
void add_file_filters(pappl_system_t* system);

void set_file_callback(pappl_pr_driver_data_t& record);

}  // namespace vrk::tool
