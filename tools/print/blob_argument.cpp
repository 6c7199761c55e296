#include "tools/print/blob_argument.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>

#include "kit/inspect.h"
#include "kit/read_tables.h"
#include "tools/command_line/printable.h"
#include "tools/tables/blob_look_up.h"

namespace vrk::tool {
namespace {

int number_or_family(const std::string& key, const std::string& value, const std::string& argument) {
  if (key == "family" && (value == "H" || value == "X")) return value == "X";
  std::int16_t number = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  if (error != std::errc() || end != value.data() + value.size()) {
    throw usage_error("--blob " + argument + ": " + key + " is \"" + value + "\", expected " +
                      (key == "family" ? "H or X" : "a number"));
  }
  return number;
}

// type: of the blob
selectors parse_selectors(std::string list, const std::string& argument, const std::string& type, unsigned inks) {
  selectors chosen;
  chosen.levels = int(inks);
  std::vector<const selector*> given;
  while (!list.empty()) {
    const std::string item = list.substr(0, list.find(','));
    list.erase(0, item.size() + 1);
    const std::string key = item.substr(0, item.find('='));
    const auto all = all_selectors();
    const auto known = std::find_if(all.begin(), all.end(), [&](const selector& s) { return s.name == key; });
    if (known == all.end()) {
      throw usage_error("--blob " + argument + ": \"" + key +
                        "\" is no selector, expected family, kind, a, b, c, d, levels, step or ink");
    }
    if (!is_selector_of(type, *known)) {
      throw usage_error("--blob " + argument + ": " + key + " chooses nothing in a blob of type " + printable(type));
    }
    if (std::ranges::count(given, &*known) != 0) throw usage_error("--blob " + argument + ": gives " + key + " twice");
    given.push_back(&*known);
    chosen.*known->field = number_or_family(key, item.substr(std::min(item.size(), key.size() + 1)), argument);
  }
  return chosen;
}

std::string listed(const std::vector<std::string>& tags, const std::string& separator) {
  constexpr std::size_t most = 40;
  std::string list;
  for (std::size_t t = 0; t < std::min(tags.size(), most); ++t) list += (t == 0 ? "" : separator) + tag_name(tags[t]);
  return tags.size() > most ? list + separator + "..." : list;
}

// Says what the blob has, and what it would need.
[[noreturn]] void refuse_selectors(const table& blob, const selectors& chosen, const std::string& argument) {
  std::vector<std::string> has, asked = tags_asked_for(blob.image, chosen);
  for (const kit::blob_entry& entry : kit::read_blob_directory(blob.image).entries) {
    has.push_back(entry.tag);
    const auto same = std::find(asked.begin(), asked.end(), entry.tag);
    if (same == asked.end()) continue;
    if (!lies_inside(entry, blob.image)) {
      refuse(blob, "has " + std::to_string(*entry.length) + " bytes of " + tag_name(entry.tag) + " at offset " +
                       std::to_string(*entry.offset) + ", expected them inside its " + std::to_string(blob.size()));
    }
    asked.erase(same);  // found, but something else is to come first
  }
  const std::string wanted = asked.empty() ? "for what no tag stands for" : "for " + listed(asked, " or ");
  refuse(blob, "has " + listed(has, ", ") + "; asked " + wanted + " (" + argument + ")");
}

}  // namespace

table read_table(const std::string& path) {
  constexpr std::streamsize most = std::streamsize{1} << 28, part = 1 << 16;  // no table is as long
  if (path.empty()) throw usage_error("the name of a file of tables is empty");
  std::ifstream file(path, std::ios::binary);
  if (!file) throw user_error(path + ": " + std::strerror(errno));
  table read{path, {}};
  while (file) {
    const std::size_t end = read.image.size();
    if (end > most) throw user_error(path + ": is longer than any table, expected at most 256 MB");
    read.image.resize(end + part);
    file.read(reinterpret_cast<char*>(&read.image[end]), part);
    read.image.resize(end + std::size_t(file.gcount()));
  }
  if (file.bad()) throw user_error(path + ": " + std::strerror(errno));
  if (read.image.empty()) throw user_error(path + ": is empty");
  return read;
}

blob_table read_from_blob(const std::string& argument, unsigned inks) {
  const std::size_t colon = argument.rfind(':');
  const bool selected = colon != std::string::npos && argument.find('=', colon) != std::string::npos;
  const std::string path = selected ? argument.substr(0, colon) : argument;
  const table blob = read_table(path);
  if (const kit::refusal why = kit::why_refused_blob(blob.image)) refuse(blob, why);
  const std::string type = kit::blob_type(blob.image);
  const selectors chosen = parse_selectors(selected ? argument.substr(colon + 1) : "", argument, type, inks);
  std::optional<kit::bytes> found = look_up(blob.image, chosen);
  if (!found) refuse_selectors(blob, chosen, argument);
  return {path, type, {argument, std::move(*found)}};
}

}  // namespace vrk::tool
