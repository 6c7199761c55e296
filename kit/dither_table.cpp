#include "kit/dither_table.h"

namespace vrk::kit {

bytes dither_table::encode() const {
  bytes out;
  put_text(out, magic);
  put_text(out, version);
  for (const dither_plane& p : planes) {
    put8(out, p.width);
    put8(out, p.height);
  }
  for (const dither_plane& p : planes) put8(out, p.level_count.value_or(unsigned(p.level_values.size())));
  for (const dither_plane& p : planes) put8(out, p.bits);
  for (const dither_plane& p : planes) {
    for (const unsigned v : p.level_values) put_be16(out, v);
  }
  for (const dither_plane& p : planes) {
    for (const unsigned v : p.matrix) put_be16(out, v);
  }
  return out;
}

}  // namespace vrk::kit
