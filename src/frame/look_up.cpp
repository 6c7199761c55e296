// The look-ups whose tag follows from their arguments alone. Each reads: arguments, own range, tag, look-up.
#include "base/tag.h"
#include "frame/blob_directory.h"

namespace {

using namespace vrk;

// A range error leaves ref->length as it was; from here on a failure leaves it 0.
u32 look_up(byte_view blob, vrk_table_ref& ref, u32 type, u32 newest, u32 wanted) {
  ref.length = 0;
  return blob_check_header(blob, type, newest) ? blob_fetch(blob, wanted, ref) : 0;
}

// A letter, the sign of a step ("0" for none) and its magnitude, at most 9: "B+3", "R00".
constexpr u32 step_characters(char letter, i32 step) {
  const char sign = step == 0 ? '0' : step > 0 ? '+' : '-';
  return u32(letter) << 16 | u32(sign) << 8 | u32('0' + (step < 0 ? -step : step));
}
static_assert(family_tag(1, step_characters('B', -5)) == tag("XB-5") &&
              family_tag(0, step_characters('B', 0)) == tag("HB00"));

}  // namespace

extern "C" {

uint32_t VRK_CALL vrk_log_htone(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family,
                                uint32_t levels) {
  const u32 digit = levels & 0xFF;
  if (!blob_arguments_usable(blob_size, blob, ref, family)) return 0;
  if (digit != 1 && digit != 4 && digit != 6) return 0;
  const u32 wanted = family_tag(family, u32('H') << 16 | (u32('0') + digit) << 8 | u32(' '));
  return look_up({blob, blob_size}, *ref, tag("HATT"), version_001z, wanted);
}

uint32_t VRK_CALL vrk_log_ingamma(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family,
                                  int16_t step) {
  constexpr char step_tags[][4] = {"D2 ", "D1 ", "T  ", "B1 ", "B2 "};  // darker ... brighter
  if (!blob_arguments_usable(blob_size, blob, ref, family) || step < -2 || step > 2) return 0;
  return look_up({blob, blob_size}, *ref, tag("INGM"), version_001z, family_tag(family, step_tags[step + 2]));
}

uint32_t VRK_CALL vrk_log_ingamma2(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family,
                                   int16_t step) {
  if (!blob_arguments_usable(blob_size, blob, ref, family) || step < -5 || step > 5) return 0;
  return look_up({blob, blob_size}, *ref, tag("INGM"), version_002z, family_tag(family, step_characters('B', step)));
}

uint32_t VRK_CALL vrk_log_outgamma(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family) {
  if (!blob_arguments_usable(blob_size, blob, ref, family)) return 0;
  return look_up({blob, blob_size}, *ref, tag("OTGM"), version_001z, family_tag(family, "N  "));
}

// The ink's own entry, or the one for all inks when the directory has none.
uint32_t VRK_CALL vrk_log_rank(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family, int16_t step,
                               int16_t ink) {
  constexpr char ink_letters[] = {'K', 'C', 'M', 'Y', 'D', 'N'};
  constexpr char any_ink = 'R';
  if (!blob_arguments_usable(blob_size, blob, ref, family) || step < -9 || step > 9) return 0;
  ref->length = 0;
  if (ink < 0 || ink > 5) return 0;  // told after the length is cleared, unlike the step
  const byte_view image(blob, blob_size);
  const u32 own = family_tag(family, step_characters(ink_letters[ink], step));
  const u32 shared = family_tag(family, step_characters(any_ink, step));
  return look_up(image, *ref, tag("HRKT"), version_001z, blob_has_entry(image, own) ? own : shared);
}

}  // extern "C"
