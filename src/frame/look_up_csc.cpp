// The look-ups of the converters' tables. Their tags depend on the blob's class and on which entries it has.
#include "base/tag.h"
#include "frame/blob_directory.h"

namespace {

using namespace vrk;

// The settings that select a table. A tag of 0 stands for a selection that has none.
struct csc_selection {
  byte_view blob;
  u16 family, kind;
  u16 a, b, c, d;
  bool c_class = false;

  bool has(const char (&rest)[4]) const { return blob_has_entry(blob, family_tag(family, rest)); }
  u32 tag(const char (&rest)[4]) const { return family_tag(family, rest); }
  u32 either(bool first, const char (&rest)[4], const char (&other)[4]) const { return tag(first ? rest : other); }
  u32 prefer(bool wanted, const char (&rest)[4], const char (&other)[4]) const {
    return either(wanted && has(rest), rest, other);
  }

  // Three tables by `a`, each with a variant that is taken when wanted and present.
  u32 by_a(bool variant) const {
    switch (a) {
      case 1:
        return prefer(variant, "PP ", "P  ");
      case 2:
        return prefer(variant, "SP ", "S  ");
      case 3:
        return prefer(variant, "CP ", "C  ");
      default:
        return 0;
    }
  }
};

u32 csc1_tag(const csc_selection& s) {
  const bool family_h = s.family == 0;
  switch (s.kind) {
    case 0:
      return s.c_class && s.b == 1 ? s.tag("T  ") : s.by_a(s.c == 1);
    case 1:
      return s.tag("T  ");
    case 2:
    case 3:
      return s.either(s.c_class || s.d != 0, "T  ", "C  ");
    case 4:
      if (family_h) return s.tag("G  ");
      return s.c_class ? s.tag("T  ") : s.prefer(s.c == 1, "PP ", "P  ");
    case 5:
      return family_h ? s.tag("BK ") : s.either(s.c_class, "T  ", "S  ");
    default:
      return family_h ? s.tag("SC ") : s.either(s.c_class, "T  ", "S  ");
  }
}

u32 csc2_tag(const csc_selection& s) {
  const bool family_h = s.family == 0;
  const bool gray = u8(s.d) == 1;  // of this selector the low byte alone counts
  switch (s.kind) {
    case 0:
      return s.c_class && s.a != 0 ? s.by_a(s.b == 1) : s.prefer(s.b == 1, "NP ", "N  ");
    case 1:
      return s.prefer(s.c_class && s.b == 1, "NP ", "N  ");
    case 2:
    case 3:
      return s.either(s.c_class && s.c == 0, "C  ", "N  ");
    case 4:
      if (!s.c_class && s.b == 1 && s.has("NP ")) return family_h ? s.prefer(true, "PP ", "NP ") : s.tag("NP ");
      return family_h || s.c_class ? s.either(gray, "PG ", "P  ") : s.either(gray, "NG ", "N  ");
    case 5:
      return family_h || s.c_class ? s.either(gray, "PG ", "S  ") : s.either(gray, "NG ", "N  ");
    default:
      return s.either(family_h || s.c_class, "S  ", "N  ");
  }
}

u32 look_up(u32 blob_size, const void* blob, vrk_table_ref* ref, u32 type, csc_selection selection,
            u32 (*tag_of)(const csc_selection&)) {
  if (!blob_arguments_usable(blob_size, blob, ref, selection.family)) return 0;
  ref->length = 0;
  if (selection.kind > 6) return 0;
  const std::optional<blob_header> header = blob_check_header(selection.blob, type, version_001z);
  if (!header) return 0;
  selection.c_class = header->c_class;
  const u32 wanted = tag_of(selection);
  return wanted == 0 ? 0 : blob_fetch(selection.blob, wanted, *ref);
}

}  // namespace

extern "C" {

uint32_t VRK_CALL vrk_log_csc1(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family, uint16_t kind,
                               uint16_t select_a, uint16_t select_b, uint16_t select_c, uint16_t select_d) {
  return look_up(blob_size, blob, ref, tag("CS1T"),
                 {{blob, blob_size}, family, kind, select_a, select_b, select_c, select_d}, csc1_tag);
}

uint32_t VRK_CALL vrk_log_csc2(uint32_t blob_size, const void* blob, vrk_table_ref* ref, uint16_t family, uint16_t kind,
                               uint16_t select_a, uint16_t select_b, uint16_t select_c, uint16_t select_d) {
  return look_up(blob_size, blob, ref, tag("CS2T"),
                 {{blob, blob_size}, family, kind, select_a, select_b, select_c, select_d}, csc2_tag);
}

}  // extern "C"
