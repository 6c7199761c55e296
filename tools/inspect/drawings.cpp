#include "tools/inspect/drawings.h"

#include "kit/inspect.h"
#include "kit/read_tables.h"
#include "tools/inspect/blob_entries.h"
#include "tools/inspect/handle_sizes.h"
#include "tools/tables/blob_look_up.h"

namespace vrk::tool {
namespace {

std::vector<drawing> drawings_of_stage_table(const table& image) {
  bool taken = false;
  for (const handle_size& size : handle_sizes(image)) taken = taken || !size.refused;
  if (!taken) return {};
  switch (kit::kind_of(image.image)) {
    case kit::table_kind::csc1:
    case kit::table_kind::csc2:
      return draw_colors(image);
    case kit::table_kind::curves:
      return draw_curves(image);
    case kit::table_kind::edpr:
      return draw_edpr(image);
    case kit::table_kind::edtb:
      return draw_edtb(image);
    default:
      return draw_dith(image);
  }
}

// Blobs in a blob are not drawn.
std::vector<drawing> drawings_of_entries(const table& blob) {
  std::vector<drawing> all;
  if (kit::why_refused_blob(blob.image)) return all;
  const kit::blob directory = kit::read_blob_directory(blob.image);
  const std::vector<entry_state> states = look_at_entries(directory, blob.image);
  for (std::size_t e = 0; e < states.size() && all.size() < most_drawings; ++e) {
    if (states[e].refused || states[e].same_as) continue;
    const kit::blob_entry& entry = directory.entries[e];
    for (drawing& d : drawings_of_stage_table({blob.name, data_of(entry, blob.image)})) {
      d.name = tag_name(entry.tag) + ": " + d.name;
      all.push_back(std::move(d));
    }
  }
  return all;
}

}  // namespace

std::vector<drawing> drawings_of(const table& image) {
  const bool blob = kit::kind_of(image.image) == kit::table_kind::blob;
  std::vector<drawing> all = blob ? drawings_of_entries(image) : drawings_of_stage_table(image);
  if (all.size() > most_drawings) all.resize(most_drawings);
  return all;
}

}  // namespace vrk::tool
