// Jobs in PWG and Apple raster: PAPPL reads the stream and hands over line by line.
#pragma once

#include <pappl/pappl.h>

namespace vrk::tool {

void set_raster_callbacks(pappl_pr_driver_data_t& record);

}  // namespace vrk::tool
