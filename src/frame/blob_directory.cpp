#include "frame/blob_directory.h"

#include "base/tag.h"

namespace vrk {

namespace {

constexpr u64 header_bytes = 32;  // up to the end-of-header mark, which the checks need
constexpr u64 directory_at = 40;
constexpr u64 entry_bytes = 12;  // tag, offset, length

}  // namespace

std::optional<blob_header> blob_check_header(byte_view blob, u32 type, u32 newest) {
  constexpr u8 end_of_header = 0x1A;
  if (!blob.holds(0, header_bytes) || blob.be32(0) != tag("CTSI") || blob.be32(4) != type || blob.be32(8) > newest ||
      blob.byte(31) != end_of_header) {
    return std::nullopt;
  }
  return blob_header{blob.byte(24) == 'C'};
}

std::optional<blob_entry> blob_find_entry(byte_view blob, u32 wanted) {
  const u32 count = blob.be16(32);
  if (count == 0 || !blob.holds(directory_at, entry_bytes * count)) return std::nullopt;
  for (u64 at = directory_at; at != directory_at + entry_bytes * count; at += entry_bytes) {
    if (blob.be32(at) == wanted) return blob_entry{blob.be32(at + 4), blob.be32(at + 8)};
  }
  return std::nullopt;
}

bool blob_has_entry(byte_view blob, u32 wanted) { return blob_find_entry(blob, wanted).has_value(); }

u32 blob_fetch(byte_view blob, u32 wanted, vrk_table_ref& ref) {
  const std::optional<blob_entry> entry = blob_find_entry(blob, wanted);
  if (!entry || !blob.holds(entry->offset, entry->length)) return 0;
  if (ref.data != nullptr) std::memcpy(ref.data, blob.at(entry->offset), entry->length);
  ref.length = entry->length;
  return 1;
}

}  // namespace vrk
