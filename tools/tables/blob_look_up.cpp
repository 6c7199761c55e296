#include "tools/tables/blob_look_up.h"

#include <vrk.h>

#include <algorithm>
#include <bit>
#include <map>
#include <utility>

#include "kit/read_tables.h"
#include "tools/command_line/printable.h"

namespace vrk::tool {
namespace {

enum selector_number { family, kind, a, b, c, d, levels, step, ink };

const std::vector<selector> selector_list{
    {"family", &selectors::family, {0, 1}},
    {"kind", &selectors::kind, {0, 1, 2, 3, 4, 5, 6}},
    {"a", &selectors::a, {0, 1, 2, 3, 4}, true},
    {"b", &selectors::b, {0, 1, 2}, true},
    {"c", &selectors::c, {0, 1, 2}, true},
    {"d", &selectors::d, {0, 1, 2}, true},
    {"levels", &selectors::levels, {1, 4, 6}},
    {"step", &selectors::step, {-9, -8, -7, -6, -5, -4, -3, -2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9}},
    {"ink", &selectors::ink, {0, 1, 2, 3, 4, 5}},
};

struct look_up_function {
  std::string_view name, type;
  std::vector<selector_number> by;
  std::uint32_t (*find)(std::uint32_t size, const void* blob, vrk_table_ref* found, const selectors& s);
};

std::uint16_t u(int v) { return std::uint16_t(v); }
std::int16_t i(int v) { return std::int16_t(v); }

const std::vector<look_up_function> look_ups{
    {"vrk_log_csc1",
     "CS1T",
     {family, kind, a, b, c, d},
     [](auto size, auto blob, auto found, auto& s) {
       return vrk_log_csc1(size, blob, found, u(s.family), u(s.kind), u(s.a), u(s.b), u(s.c), u(s.d));
     }},
    {"vrk_log_csc2",
     "CS2T",
     {family, kind, a, b, c, d},
     [](auto size, auto blob, auto found, auto& s) {
       return vrk_log_csc2(size, blob, found, u(s.family), u(s.kind), u(s.a), u(s.b), u(s.c), u(s.d));
     }},
    {"vrk_log_htone",
     "HATT",
     {family, levels},
     [](auto size, auto blob, auto found, auto& s) {
       return vrk_log_htone(size, blob, found, u(s.family), std::uint32_t(s.levels));
     }},
    {"vrk_log_ingamma2",
     "INGM",
     {family, step},
     [](auto size, auto blob, auto found, auto& s) {
       return vrk_log_ingamma2(size, blob, found, u(s.family), i(s.step));
     }},
    {"vrk_log_ingamma",
     "INGM",
     {family, step},
     [](auto size, auto blob, auto found, auto& s) {
       return vrk_log_ingamma(size, blob, found, u(s.family), i(s.step));
     }},
    {"vrk_log_outgamma",
     "OTGM",
     {family},
     [](auto size, auto blob, auto found, auto& s) { return vrk_log_outgamma(size, blob, found, u(s.family)); }},
    {"vrk_log_rank",
     "HRKT",
     {family, step, ink},
     [](auto size, auto blob, auto found, auto& s) {
       return vrk_log_rank(size, blob, found, u(s.family), i(s.step), i(s.ink));
     }},
};

std::optional<kit::bytes> find(const look_up_function& by, const kit::bytes& blob, const selectors& chosen) {
  vrk_table_ref found{0, nullptr};
  if (by.find(std::uint32_t(blob.size()), blob.data(), &found, chosen) == 0) return {};
  kit::bytes table(found.length);
  found.data = table.data();
  by.find(std::uint32_t(blob.size()), blob.data(), &found, chosen);
  return table;
}

// A blob that serves the same look-ups as another, with these tags. Each entry holds its own tag and number, so that a
// look-up tells which one it found.
kit::blob probe_like(const kit::blob& other, const std::vector<std::string>& tags) {
  kit::blob probe{.type = other.type, .version = other.version, .class_code = other.class_code};
  for (const std::string& tag : tags) {
    kit::bytes data(tag.begin(), tag.end());
    kit::put_be32(data, std::uint32_t(probe.entries.size()));
    probe.entries.push_back({tag, std::move(data)});
  }
  return probe;
}

std::size_t number_of(const kit::bytes& data) {
  std::size_t number = 0;
  for (std::size_t k = 4; k < 8; ++k) number = number << 8 | data[k];
  return number;
}

// All tags of a family that the characters of tags can form. They fit a directory.
std::vector<std::string> possible_tags(int of_family) {
  constexpr std::string_view characters = " +-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  static_assert(characters.size() * characters.size() * characters.size() <= 0xFFFF);
  std::vector<std::string> tags;
  for (const char second : characters) {
    for (const char third : characters) {
      for (const char fourth : characters) tags.push_back({of_family == 0 ? 'H' : 'X', second, third, fourth});
    }
  }
  return tags;
}

// Combinations of selectors: for each selector, a bit for every value of its list.
using selection = std::vector<std::uint32_t>;

// Joins selections that differ in one selector only.
std::vector<selection> joined(std::vector<selection> all) {
  if (all.empty()) return all;
  for (std::size_t at = all[0].size(); at-- != 0;) {
    std::map<selection, std::uint32_t> values;  // of this selector, by all others
    for (selection& s : all) {
      const std::uint32_t own = std::exchange(s[at], 0);
      values[s] |= own;
    }
    all.clear();
    for (const auto& [others, own] : values) {
      all.push_back(others);
      all.back()[at] = own;
    }
  }
  return all;
}

std::string value_name(const selector& of, int value) {
  return of.field == &selectors::family ? value == 0 ? "H" : "X" : std::to_string(value);
}

std::string text_of(const look_up_function& by, const selection& chosen) {
  std::string text(by.name);
  for (std::size_t at = 0; at < chosen.size(); ++at) {
    const selector& of = selector_list[by.by[at]];
    const std::uint32_t every = (1U << of.values.size()) - 1;
    if (chosen[at] == every) continue;
    const bool others = of.others_as_last && (chosen[at] >> (of.values.size() - 1) & 1) != 0;
    const std::uint32_t listed = others ? every & ~chosen[at] : chosen[at];
    std::string values;
    for (std::size_t v = 0; v < of.values.size(); ++v) {
      if ((listed >> v & 1) == 0) continue;
      if (!values.empty()) values += ',';
      values += value_name(of, of.values[v]);
    }
    text.append(" ").append(of.name).append(others ? "!=" : "=").append(values);
  }
  return text;
}

// Calls `use` with every combination of the values of a look-up's selectors.
template <class Use>
void for_every_selection(const look_up_function& by, const Use& use) {
  selection chosen(by.by.size(), 1);
  for (;;) {
    selectors values;
    for (std::size_t at = 0; at < chosen.size(); ++at) {
      const selector& of = selector_list[by.by[at]];
      values.*of.field = of.values[std::size_t(std::countr_zero(chosen[at]))];
    }
    use(chosen, values);
    std::size_t at = 0;
    while (at < chosen.size() && chosen[at] << 1 >= 1U << selector_list[by.by[at]].values.size()) chosen[at++] = 1;
    if (at == chosen.size()) return;
    chosen[at] <<= 1;
  }
}

}  // namespace

std::span<const selector> all_selectors() { return selector_list; }

bool is_selector_of(const std::string& type, const selector& by) {
  const auto number = selector_number(&by - selector_list.data());
  const auto is_of_type = [&](const look_up_function& function) { return function.type == type; };
  return std::ranges::none_of(look_ups, is_of_type) || std::ranges::any_of(look_ups, [&](const auto& function) {
           return is_of_type(function) && std::ranges::count(function.by, number) != 0;
         });
}

std::optional<kit::bytes> look_up(const kit::bytes& blob, const selectors& chosen) {
  for (const look_up_function& by : look_ups) {
    if (auto table = find(by, blob, chosen)) return table;
  }
  return {};
}

std::vector<std::string> tags_asked_for(const kit::bytes& blob, const selectors& chosen) {
  kit::blob probe = probe_like(kit::read_blob_directory(blob), possible_tags(chosen.family));
  std::vector<std::string> asked;
  for (const look_up_function& by : look_ups) {
    while (const auto found = find(by, probe.encode(), chosen)) {
      asked.push_back(probe.entries[number_of(*found)].tag);
      probe.entries[number_of(*found)].tag.clear();
    }
  }
  return asked;
}

std::vector<std::vector<std::string>> ways_to_entries(const kit::bytes& blob) {
  const kit::blob directory = kit::read_blob_directory(blob);
  std::vector<std::string> tags;
  for (const kit::blob_entry& entry : directory.entries) tags.push_back(entry.tag);
  const kit::bytes probe = probe_like(directory, tags).encode();

  std::vector<std::vector<std::string>> ways(tags.size());
  for (const look_up_function& by : look_ups) {
    if (by.type != directory.type) continue;
    std::map<std::size_t, std::vector<selection>> selections;  // by the entry that they find
    for_every_selection(by, [&](const selection& chosen, const selectors& values) {
      if (const auto found = find(by, probe, values)) selections[number_of(*found)].push_back(chosen);
    });
    for (const auto& [entry, of_entry] : selections) {
      for (const selection& s : joined(of_entry)) ways[entry].push_back(text_of(by, s));
    }
  }
  return ways;
}

std::string tag_name(const std::string& tag) { return printable(tag.substr(0, tag.find_last_not_of(' ') + 1)); }

}  // namespace vrk::tool
