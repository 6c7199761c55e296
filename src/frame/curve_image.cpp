#include "frame/curve_image.h"

namespace vrk {

curve_image::curve_image(const void* data, u64 size)
    : image_(data, size),
      magic_(image_.be32(0)),
      version_(image_.be32(4)),
      curve_count_(image_.byte(8)),
      output_count_(image_.byte(9)),
      entry_count_(image_.be16(10)) {}

check curve_image::check_header(u32 newest) const {
  if (magic_ != tag("1dlt")) return check::wrong_magic;
  if (version_ > newest) return check::too_new;
  return entry_count_ == entries ? check::ok : check::malformed;
}

check curve_image::check_header(u32 newest, u32 curves) const {
  const check common = check_header(newest);
  if (common != check::ok) return common;
  return curve_count_ == curves ? check::ok : check::malformed;
}

}  // namespace vrk
