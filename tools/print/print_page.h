// One print: a picture in, plane files and pictures of the dots out.
#pragma once

#include "tools/files/output_set.h"
#include "tools/image/image_reader.h"
#include "tools/pipeline/pipeline.h"
#include "tools/print/print_options.h"
#include "tools/print/print_report.h"
#include "tools/print/print_tables.h"

namespace vrk::tool {

// Writes <plane>.pbm (.pgm above one bit) or print.tif, manifest.json, and preview.png and detail.png where pictures
// are drawn, and keeps them. Files that an earlier print in this directory has left and this one does not replace are
// removed. A pixel of the source is a dot, or a cell of dots, at the source's resolution, which is usual_dpi where it
// has none.
print_report print_page(image_reader& source, const print_options& options, output_set& to);

// The same through a pipeline that was made of these tables.
print_report print_through(pipeline& stages, image_reader& source, const print_tables& tables,
                           const print_options& options, output_set& to);

}  // namespace vrk::tool
