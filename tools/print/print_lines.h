// The lines of a picture through the pipeline, on several threads.
#pragma once

#include "tools/image/image_reader.h"
#include "tools/pipeline/pipeline.h"
#include "tools/print/page_files.h"

namespace vrk::tool {

// Sends all lines of the picture through the stages and into the files, in order. Returns the seconds spent on reading.
// silent: without a progress bar
double print_lines(image_reader& source, pipeline& stages, page_files& files, unsigned threads, bool silent);

}  // namespace vrk::tool
