// One print: a picture in, plane files and pictures of the dots out.
#pragma once

#include <optional>

#include "tools/files/output_set.h"
#include "tools/image/image_reader.h"
#include "tools/image/window.h"
#include "tools/print/print_options.h"
#include "tools/print/print_report.h"

namespace vrk::tool {

// Writes <plane>.pbm (.pgm above one bit), preview.png, detail.png and manifest.json, and keeps them. Files that an
// earlier print in this directory has left and this one does not replace are removed. detail_centre: by default the
// picture's.
print_report print_page(image_reader& source, const print_options& options, output_set& to,
                        std::optional<pixel_place> detail_centre = {});

}  // namespace vrk::tool
