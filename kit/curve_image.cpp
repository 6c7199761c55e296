#include "kit/curve_image.h"

namespace vrk::kit {

bytes curve_image::encode() const {
  bytes out;
  put_text(out, magic);
  put_text(out, version);
  put8(out, curve_count.value_or(unsigned(curves.size())));
  put8(out, output_count);
  put_be16(out, entries);
  for (const curve& c : curves) {
    for (const unsigned level : c) put_be16(out, level);
  }
  return out;
}

}  // namespace vrk::kit
