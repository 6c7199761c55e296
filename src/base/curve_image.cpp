#include "base/curve_image.h"

#include "base/tag.h"

namespace vrk {

curve_image::curve_image(const void* data, u64 size)
    : image_(data, size),
      magic_(image_.be32(0)),
      version_(image_.be32(4)),
      curve_count_(image_.byte(8)),
      output_count_(image_.byte(9)),
      entry_count_(image_.be16(10)) {}

bool curve_image::check_header(u32 newest) const {
  return magic_ == tag("1dlt") && version_ <= newest && entry_count_ == entries;
}

bool curve_image::check_header(u32 newest, u32 curves) const { return check_header(newest) && curve_count_ == curves; }

}  // namespace vrk
