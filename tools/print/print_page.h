// One print: a picture in, plane files and pictures of the dots out.
#pragma once

#include <filesystem>
#include <optional>

#include "tools/image/image_reader.h"
#include "tools/image/window.h"
#include "tools/print/print_options.h"
#include "tools/print/print_report.h"

namespace vrk::tool {

// Writes DIR/<plane>.pbm (.pgm above one bit), DIR/preview.png and DIR/detail.png. A file gets its final name only when
// all of them are complete. detail_centre: by default the picture's.
print_report print_page(image_reader& source, const print_options& options, const std::filesystem::path& directory,
                        std::optional<pixel_place> detail_centre = {});

}  // namespace vrk::tool
