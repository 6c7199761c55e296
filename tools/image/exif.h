// What a camera notes about its pictures.
#pragma once

#include <cstddef>
#include <optional>

#include "tools/image/orientation.h"
#include "tools/image/resolution.h"

namespace vrk::tool {

struct exif_notes {
  orientation seen{};
  std::optional<resolution> dpi{};  // none when it is 72 dpi, which stands for "unknown" there
};

// data: an EXIF block from its TIFF header on, as in a PNG's "eXIf" chunk and behind "Exif\0\0" in a JPEG. Fields that
// are missing or damaged count as not given.
exif_notes read_exif(const void* data, std::size_t size);

}  // namespace vrk::tool
