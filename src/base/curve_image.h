// The curve table image ("1dlt"): the one reader of tone curves, for every stage that takes them.
#pragma once

#include "base/byte_view.h"
#include "base/samples.h"

namespace vrk {

// A header of 12 bytes, then curves of 1024 big-endian 16-bit entries. Entry i is the output level on a 16-bit scale
// for the input level i on a 10-bit scale. The header is read once, here; a stage then says which values it accepts.
class curve_image {
 public:
  static constexpr u32 entries = 1024;  // of every curve

  // Length of an image of so many curves. A stage that is given no length takes its image to hold the curves it needs.
  static constexpr u64 bytes(u32 curves) { return 12 + u64{2} * entries * curves; }

  curve_image(const void* data, u64 size);

  u32 version() const { return version_; }
  u32 curve_count() const { return curve_count_; }
  u32 output_count() const { return output_count_; }  // means something to post-processing only

  // What all stages require: magic, a version not above `newest`, and the entry count. The body is not looked at.
  bool check_header(u32 newest) const;
  bool check_header(u32 newest, u32 curves) const;

  u16 entry(u32 curve, u32 level10) { return image_.be16(bytes(curve) + 2 * level10); }
  u16 sample(u32 curve, u32 level8) { return entry(curve, rescale<8, 10>(level8)); }

  // False once anything was read that the image does not hold (it read as 0).
  bool ok() const { return image_.ok(); }

 private:
  byte_view image_;
  u32 magic_, version_;
  u8 curve_count_, output_count_;
  u16 entry_count_;
};

}  // namespace vrk
