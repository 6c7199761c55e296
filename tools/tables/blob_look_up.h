// Tables in parameter blobs, found by the library's own look-ups, and what these look for.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kit/blob.h"

namespace vrk::tool {

// What a driver chooses a table by. family: 0 "H", 1 "X".
struct selectors {
  int family = 0, kind = 0, a = 0, b = 0, c = 0, d = 0, levels = 0, step = 0, ink = 0;
};

struct selector {
  std::string_view name;
  int selectors::*field;
  std::vector<int> values;      // that look-ups tell apart
  bool others_as_last = false;  // every value that is not listed is taken as the last one
};
std::span<const selector> all_selectors();

// Whether a look-up in blobs of this type is by the selector, one of all_selectors. In a blob of unknown type, by all.
bool is_selector_of(const std::string& type, const selector& by);

// The table that these selectors find, if the image is a parameter blob and has it. Of input tone curves, newer blobs
// have five steps each way and older ones two, under other tags: the newer ones go first.
std::optional<kit::bytes> look_up(const kit::bytes& blob, const selectors& chosen);

// The tags that these selectors find one after the other, each where those before it are missing. Empty when they are
// out of range.
std::vector<std::string> tags_asked_for(const kit::bytes& blob, const selectors& chosen);

// For every entry of the directory, the look-ups and selectors that find it: "vrk_log_csc2 family=H kind=2,3 c=0". A
// selector that makes no difference is left out.
std::vector<std::vector<std::string>> ways_to_entries(const kit::bytes& blob);

// A tag without the blanks that fill it up, in characters for people.
std::string tag_name(const std::string& tag);

}  // namespace vrk::tool
