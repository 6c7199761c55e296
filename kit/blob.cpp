#include "kit/blob.h"

namespace vrk::kit {

bytes blob::encode() const {
  bytes out;
  put_text(out, magic);
  put_text(out, type);
  put_text(out, version);
  out.resize(24);
  put8(out, std::uint8_t(class_code));
  out.resize(31);
  put8(out, end_mark);
  put_be16(out, entry_count.value_or(unsigned(entries.size())));
  out.resize(blob_header_bytes);

  std::size_t offset = blob_header_bytes + blob_entry_bytes * entries.size();
  for (const blob_entry& e : entries) {
    std::string tag = e.tag;
    tag.resize(4, ' ');
    put_text(out, tag);
    put_be32(out, e.offset.value_or(std::uint32_t(offset)));
    put_be32(out, e.length.value_or(std::uint32_t(e.data.size())));
    offset += e.data.size();
  }
  for (const blob_entry& e : entries) out.insert(out.end(), e.data.begin(), e.data.end());
  return out;
}

}  // namespace vrk::kit
