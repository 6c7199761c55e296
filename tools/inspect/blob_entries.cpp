#include "tools/inspect/blob_entries.h"

#include <map>

#include "kit/read_tables.h"

namespace vrk::tool {

std::vector<entry_state> look_at_entries(const kit::blob& directory, const kit::bytes& blob) {
  std::vector<entry_state> states(directory.entries.size());
  std::size_t left = 2 * blob.size();
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::size_t> known;  // number of the entry, by offset and length
  for (std::size_t e = 0; e < states.size(); ++e) {
    const kit::blob_entry& entry = directory.entries[e];
    const std::size_t place = kit::blob_header_bytes + kit::blob_entry_bytes * e + 4;  // behind its tag
    const std::string bytes = std::to_string(*entry.length) + " bytes from offset " + std::to_string(*entry.offset);
    if (!lies_inside(entry, blob)) {
      states[e].refused = {"data", bytes, place, "bytes inside the " + std::to_string(blob.size()) + " of the blob"};
      continue;
    }
    const auto [first, is_new] = known.try_emplace({*entry.offset, *entry.length}, e);
    if (!is_new) {
      states[e].same_as = first->second;
    } else if (*entry.length > left) {
      states[e].refused = {"data", bytes, place, "bytes that no other entry has a part of"};
    } else {
      left -= *entry.length;
    }
  }
  return states;
}

}  // namespace vrk::tool
