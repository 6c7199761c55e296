#include <algorithm>

#include "kit/inspect.h"
#include "kit/read_tables.h"
#include "tools/command_line/printable.h"
#include "tools/inspect/blob_entries.h"
#include "tools/inspect/description.h"
#include "tools/inspect/handle_sizes.h"
#include "tools/tables/blob_look_up.h"

namespace vrk::tool {
namespace {

tree tree_of(const kit::refusal& why) {
  tree told{{"field", why.field}};
  if (why.offset) told["offset"] = *why.offset;
  told["found"] = why.found;
  told["expected"] = why.expected;
  return told;
}

// By use and precision: bytes, or why not. Uses that the table is not meant for are left out.
tree tree_of(const std::vector<handle_size>& sizes) {
  tree handles = tree::object();
  const auto serves = [&](const std::string& use) {
    return std::any_of(sizes.begin(), sizes.end(), [&](const handle_size& s) { return s.use == use && !s.refused; });
  };
  for (const handle_size& s : sizes) {
    if (!serves(s.use)) continue;
    tree& told = handles[s.use][s.precision];
    if (s.refused) {
      told = tree_of(s.refused);
    } else {
      told["bytes"] = s.bytes;
      if (s.pixel_bytes != 0) told["bytes a pixel of a line"] = s.pixel_bytes;
    }
  }
  return handles;
}

// A curve image serves by its number of curves. The others are refused by all stages alike.
kit::refusal why_refused_as_curves(const kit::bytes& image) {
  const unsigned count = kit::curve_count(image);
  if (count == 1 || count == 3) return kit::why_refused_curves(image, count);
  const kit::refusal why = kit::why_refused_main_curves(image, count);
  if (why.field != "curve count") return why;
  return {why.field, why.found, why.offset, "1, 3, 4 or 6"};
}

struct kind_of_table {
  kit::table_kind kind;
  const char* name;
  tree (*describe)(const table& image);
};
constexpr kind_of_table kinds[] = {
    {kit::table_kind::csc1, "csc1: colours for the first converter", describe_csc1},
    {kit::table_kind::csc2, "csc2: inks for the second converter", describe_csc2},
    {kit::table_kind::curves, "1dlt: tone curves", describe_curves},
    {kit::table_kind::edpr, "edpr: levels and thresholds for error diffusion", describe_edpr},
    {kit::table_kind::edtb, "edtb: distribution of errors for error diffusion", describe_edtb},
    {kit::table_kind::dith, "dith: levels and matrices for ordered dither", describe_dith},
};

tree describe_stage_table(const table& image, const kind_of_table& kind) {
  const std::vector<handle_size> sizes = handle_sizes(image);
  const bool taken = std::any_of(sizes.begin(), sizes.end(), [](const handle_size& s) { return !s.refused; });
  tree told{{"kind", kind.name}, {"bytes", image.size()}, {"taken", taken}};
  if (!taken) {
    const bool by_count = kind.kind == kit::table_kind::curves;
    told["refused"] = tree_of(by_count ? why_refused_as_curves(image.image) : sizes.front().refused);
    return told;
  }
  told.update(kind.describe(image));
  told["handles"] = tree_of(sizes);
  return told;
}

constexpr const char* unknown_kind = "unknown";

// depth: of blobs in blobs.
tree describe_blob(const table& image, unsigned depth);

tree describe_at(const table& image, unsigned depth) {
  const kit::table_kind kind = kit::kind_of(image.image);
  if (kind == kit::table_kind::blob) return describe_blob(image, depth);
  for (const kind_of_table& known : kinds) {
    if (known.kind == kind) return describe_stage_table(image, known);
  }
  const kit::refusal why = kit::why_refused_blob(image.image);
  tree told{{"kind", unknown_kind}, {"bytes", image.size()}, {"taken", false}, {"refused", tree_of(why)}};
  if (why.field == "magic") told["refused"]["expected"] = "csc1, csc2, 1dlt, edpr, edtb, dith or CTSI";
  return told;
}

tree describe_blob(const table& image, unsigned depth) {
  tree told{{"kind", "CTSI: parameter blob"}, {"bytes", image.size()}, {"taken", false}};
  if (const kit::refusal why = kit::why_refused_blob(image.image)) {
    told["refused"] = tree_of(why);
    return told;
  }
  if (depth == 0) {
    told["refused"] = tree_of({"blob", "in another blob in a blob", 0, "a table"});
    return told;
  }
  const kit::blob directory = kit::read_blob_directory(image.image);
  told["type"] = printable(directory.type);
  told["version"] = printable(directory.version);
  told["class"] = printable({&directory.class_code, 1});
  const std::vector<std::vector<std::string>> ways = ways_to_entries(image.image);
  const std::vector<entry_state> states = look_at_entries(directory, image.image);
  bool all_taken = true;
  for (std::size_t e = 0; e < states.size(); ++e) {
    const kit::blob_entry& entry = directory.entries[e];
    tree holds;
    if (states[e].refused) {
      holds = {{"taken", false}, {"refused", tree_of(states[e].refused)}};
    } else if (states[e].same_as) {
      holds["same as"] = tag_name(directory.entries[*states[e].same_as].tag);
    } else {
      holds = describe_at({image.name, data_of(entry, image.image)}, depth - 1);
      if (holds["kind"] == unknown_kind) holds = {{"kind", unknown_kind}};  // a driver may have a use for it
    }
    all_taken = all_taken && holds.value("taken", true);
    told["entries"].push_back({{"tag", tag_name(entry.tag)},
                               {"offset", *entry.offset},
                               {"length", *entry.length},
                               {"found by", ways[e]},
                               {"holds", std::move(holds)}});
  }
  told["taken"] = all_taken;
  return told;
}

}  // namespace

tree describe(const table& image) {
  constexpr unsigned deepest_blob = 2;  // in another
  return describe_at(image, deepest_blob);
}

}  // namespace vrk::tool
