// The pages of a job, printed into the device of its printer.
#pragma once

#include <pappl/pappl.h>

#include <functional>
#include <memory>

#include "tools/image/image_reader.h"
#include "tools/queue/job_options.h"

namespace vrk::tool {

// What the job, its printer and the device ask for.
job_options read_options(pappl_job_t* job, job_kind kind);

// next: null behind the last page. A directory gets one of the job's own, with the files that `vrk print` writes; any
// other device gets a raster stream, a page when it is complete. Throws user_error; the whole pages stay.
void print_job(pappl_job_t* job, pappl_device_t* device, const print_options& options,
               const std::function<std::unique_ptr<image_reader>()>& next);

}  // namespace vrk::tool
