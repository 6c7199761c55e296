// What a camera notes about its pictures.
#pragma once

#include <cstddef>
#include <optional>

#include "kit/bytes.h"
#include "tools/image/orientation.h"
#include "tools/image/resolution.h"

namespace vrk::tool {

enum class exif_color { not_said, srgb, adobe_rgb };

struct exif_notes {
  orientation seen{};
  std::optional<resolution> dpi{};  // none when it is 72 dpi, which stands for "unknown" there
  exif_color color = exif_color::not_said;
};

// data: an EXIF block from its TIFF header on, as in a PNG's "eXIf" chunk and behind "Exif\0\0" in a JPEG. Fields that
// are missing or damaged count as not given.
exif_notes read_exif(const void* data, std::size_t size);

// An ICC profile of pictures with so many channels; empty where the note says nothing about those.
kit::bytes profile_of(exif_color color, unsigned channels);

}  // namespace vrk::tool
