#include "tools/image/exif.h"

#include <libexif/exif-data.h>

#include <memory>
#include <string>

#include "kit/profiles/plain_profile.h"

namespace vrk::tool {
namespace {

struct exif_release {
  void operator()(ExifData* data) const { exif_data_unref(data); }
};
using exif_data = std::unique_ptr<ExifData, exif_release>;

const ExifEntry* find(const exif_data& exif, ExifTag tag, ExifFormat format, ExifIfd where = EXIF_IFD_0) {
  const ExifEntry* const entry = exif_content_get_entry(exif->ifd[where], tag);
  const bool found = entry != nullptr && entry->format == format && entry->components >= 1 &&
                     entry->size >= exif_format_get_size(format);
  return found ? entry : nullptr;
}

std::optional<unsigned> short_number(const exif_data& exif, ExifTag tag, ExifIfd where = EXIF_IFD_0) {
  const ExifEntry* const entry = find(exif, tag, EXIF_FORMAT_SHORT, where);
  if (entry == nullptr) return {};
  return exif_get_short(entry->data, exif_data_get_byte_order(exif.get()));
}

double ratio(const exif_data& exif, ExifTag tag) {
  const ExifEntry* const entry = find(exif, tag, EXIF_FORMAT_RATIONAL);
  if (entry == nullptr) return 0;
  const ExifRational value = exif_get_rational(entry->data, exif_data_get_byte_order(exif.get()));
  return value.denominator == 0 ? 0 : double(value.numerator) / value.denominator;
}

// Cameras that write Adobe RGB call it "uncalibrated", and say which one it is by the interoperability of their files.
// Some use a number that the format does not have.
exif_color color_of(const exif_data& exif) {
  constexpr unsigned srgb = 1, adobe_rgb = 2;
  const ExifEntry* const index =
      find(exif, ExifTag(EXIF_TAG_INTEROPERABILITY_INDEX), EXIF_FORMAT_ASCII, EXIF_IFD_INTEROPERABILITY);
  const std::string kind = index == nullptr ? "" : std::string(reinterpret_cast<const char*>(index->data), index->size);
  const unsigned space = short_number(exif, EXIF_TAG_COLOR_SPACE, EXIF_IFD_EXIF).value_or(0);
  if (space == srgb) return exif_color::srgb;
  return space == adobe_rgb || kind.starts_with("R03") ? exif_color::adobe_rgb : exif_color::not_said;
}

}  // namespace

exif_notes read_exif(const void* data, std::size_t size) {
  // The library expects what a JPEG has in front of the block.
  std::string block("Exif\0\0", 6);
  block.append(static_cast<const char*>(data), size);
  const exif_data exif(exif_data_new());
  exif_data_unset_option(exif.get(), EXIF_DATA_OPTION_FOLLOW_SPECIFICATION);  // take fields as they are
  exif_data_load_data(exif.get(), reinterpret_cast<const unsigned char*>(block.data()), unsigned(block.size()));

  exif_notes notes;
  notes.seen = exif_orientation(short_number(exif, EXIF_TAG_ORIENTATION).value_or(1));
  constexpr unsigned centimetres = 3;
  const bool metric = short_number(exif, EXIF_TAG_RESOLUTION_UNIT) == centimetres;
  const double unit = metric ? mm_per_inch / 10 : 1;
  const resolution dpi{ratio(exif, EXIF_TAG_X_RESOLUTION) * unit, ratio(exif, EXIF_TAG_Y_RESOLUTION) * unit};
  constexpr resolution unknown{72, 72};
  if (dpi.x > 0 && dpi.y > 0 && dpi != unknown) notes.dpi = dpi;
  notes.color = color_of(exif);
  return notes;
}

kit::bytes profile_of(exif_color color, unsigned channels) {
  if (color == exif_color::adobe_rgb && channels == 3) return profiles::adobe_rgb_profile();
  return color == exif_color::srgb && channels != 4 ? profiles::srgb_profile(channels) : kit::bytes{};
}

}  // namespace vrk::tool
