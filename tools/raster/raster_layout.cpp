#include "tools/raster/raster_layout.h"

#include <algorithm>
#include <cstring>

#include "tools/page/paper.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

struct color_space {
  cups_cspace_t space;
  unsigned channels;
  std::uint8_t places[4];
  bool inverted;
};
constexpr color_space color_spaces[] = {
    {CUPS_CSPACE_W, 1, {0}, false},
    {CUPS_CSPACE_SW, 1, {0}, false},
    {CUPS_CSPACE_K, 1, {0}, true},
    {CUPS_CSPACE_RGB, 3, {0, 1, 2}, false},
    {CUPS_CSPACE_SRGB, 3, {0, 1, 2}, false},
    {CUPS_CSPACE_ADOBERGB, 3, {0, 1, 2}, false},
    {CUPS_CSPACE_CMY, 3, {0, 1, 2}, true},
    {CUPS_CSPACE_CMYK, 4, {0, 1, 2, 3}, false},
    {CUPS_CSPACE_KCMY, 4, {1, 2, 3, 0}, false},
};

void require(bool fits, const std::string& name, const std::string& has, const std::string& expected) {
  if (!fits) throw user_error(name + ": its header has " + has + ", expected " + expected);
}

// libcups fills its enumerations with whatever the file has; read as one, other values than its own mean nothing.
template <class Enum>
unsigned stored(const Enum& field) {
  static_assert(sizeof field == sizeof(unsigned));
  unsigned number;
  std::memcpy(&number, &field, sizeof number);
  return number;
}

std::string number(std::uint64_t value) { return std::to_string(value); }

// 8 or 16 bits of the sample at `index`.
unsigned sample(const std::uint8_t* row, std::size_t index, unsigned bits) {
  if (bits == 8) return row[index];
  if (bits == 16) {
    std::uint16_t value;
    std::memcpy(&value, row + 2 * index, sizeof value);
    return value;
  }
  const std::size_t at = index * bits;
  const unsigned full = (1U << bits) - 1;
  return (row[at / 8] >> (8 - bits - at % 8) & full) * (0xFF / full);
}

template <class Sample>
void arrange_as(const raster_layout& layout, const std::vector<const std::uint8_t*>& rows, Sample* to) {
  const unsigned invert = layout.inverted ? Sample(~Sample{}) : 0;
  const bool mixed = layout.order == CUPS_ORDER_CHUNKED;
  const unsigned step = mixed ? layout.channels : 1, bits = layout.bits;
  for (unsigned c = 0; c < layout.channels; ++c) {
    const std::uint8_t* const row = mixed ? rows[0] : rows[layout.places[c]];
    std::size_t from = mixed ? layout.places[c] : 0;
    for (std::size_t at = c; at < std::size_t{layout.width} * layout.channels; at += layout.channels, from += step) {
      to[at] = Sample(sample(row, from, bits) ^ invert);
    }
  }
}

}  // namespace

raster_layout layout_of(const cups_page_header2_t& header, const std::string& name, const picture_limits& limits) {
  require(limits.admit(header.cupsWidth, header.cupsHeight), name,
          number(header.cupsWidth) + " x " + number(header.cupsHeight) + " pixels", limits.text());
  for (const unsigned dpi : header.HWResolution) {
    require(dpi >= lowest_dpi && dpi <= highest_dpi, name, number(dpi) + " dpi",
            number(lowest_dpi) + " to " + number(highest_dpi));
  }
  const auto* const space = std::ranges::find_if(
      color_spaces,
      [space = stored(header.cupsColorSpace)](const color_space& known) { return unsigned(known.space) == space; });
  require(space != std::end(color_spaces), name, "colour space " + number(stored(header.cupsColorSpace)),
          "W, SW, K, RGB, sRGB, Adobe RGB, CMY, CMYK or KCMY (0, 18, 3, 1, 19, 20, 4, 6, 8)");
  require(header.cupsNumColors == space->channels, name, number(header.cupsNumColors) + " colours",
          number(space->channels) + " in colour space " + number(space->space));
  const unsigned bits = header.cupsBitsPerColor;
  require(bits == 8 || bits == 16 || ((bits == 1 || bits == 2 || bits == 4) && space->channels != 3), name,
          number(bits) + (bits == 1 ? " bit" : " bits") + " a colour",
          space->channels == 3 ? "8 or 16 (Ghostscript: -dcupsBitsPerColor=8)" : "1, 2, 4, 8 or 16");
  const unsigned order = stored(header.cupsColorOrder);
  require(order <= CUPS_ORDER_PLANAR, name, "colour order " + number(order), "0, 1 or 2");
  const raster_layout layout{
      header.cupsWidth,    header.cupsHeight, space->channels, bits,
      cups_order_t(order), space->places,     space->inverted, space->space == CUPS_CSPACE_ADOBERGB};
  const unsigned pixel_bits = layout.order == CUPS_ORDER_CHUNKED ? bits * layout.channels : bits;
  require(header.cupsBitsPerPixel == pixel_bits || layout.order != CUPS_ORDER_CHUNKED, name,
          number(header.cupsBitsPerPixel) + " bits a pixel", number(pixel_bits));
  require(header.cupsBytesPerLine == layout.line_bytes(), name, number(header.cupsBytesPerLine) + " bytes a line",
          number(layout.line_bytes()));
  return layout;
}

bool is_arranged(const raster_layout& layout) {
  const bool in_order = std::is_sorted(layout.places, layout.places + layout.channels);
  return layout.order == CUPS_ORDER_CHUNKED && layout.bits >= 8 && in_order && !layout.inverted;
}

void arrange(const raster_layout& layout, const std::vector<const std::uint8_t*>& rows, void* to) {
  layout.bits == 16 ? arrange_as(layout, rows, static_cast<std::uint16_t*>(to))
                    : arrange_as(layout, rows, static_cast<std::uint8_t*>(to));
}

}  // namespace vrk::tool
