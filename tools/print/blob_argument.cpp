#include "tools/print/blob_argument.h"

#include <vrk.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>
#include <iterator>

#include "kit/inspect.h"

namespace vrk::tool {
namespace {

struct selectors {
  int family = 0, kind = 0, a = 0, b = 0, c = 0, d = 0, levels = 0, step = 0, ink = 0;
};

struct selector_name {
  std::string_view name;
  int selectors::*field;
};
constexpr selector_name selector_names[] = {
    {"family", &selectors::family}, {"kind", &selectors::kind}, {"a", &selectors::a},
    {"b", &selectors::b},           {"c", &selectors::c},       {"d", &selectors::d},
    {"levels", &selectors::levels}, {"step", &selectors::step}, {"ink", &selectors::ink},
};

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

selectors parse_selectors(std::string list, const std::string& argument, unsigned inks) {
  selectors chosen;
  chosen.levels = int(inks);
  while (!list.empty()) {
    const std::string item = list.substr(0, list.find(','));
    list.erase(0, item.size() + 1);
    const std::string key = item.substr(0, item.find('='));
    const auto* const known = std::find_if(std::begin(selector_names), std::end(selector_names),
                                           [&](const selector_name& s) { return s.name == key; });
    if (known == std::end(selector_names)) {
      throw usage_error("--blob " + argument + ": \"" + key +
                        "\" is no selector, expected family, kind, a, b, c, d, levels, step or ink");
    }
    chosen.*known->field = number_or_family(key, item.substr(std::min(item.size(), key.size() + 1)), argument);
  }
  return chosen;
}

constexpr std::string_view types[] = {"CS1T", "CS2T", "HATT", "INGM", "OTGM", "HRKT"};

// type: one of `types`. Returns false when the blob has no such table. With found.data null, only the length is
// reported, else the table is copied there.
bool look_up(const table& blob, const std::string& type, const selectors& s, vrk_table_ref& found) {
  const std::uint8_t* const data = blob.image.data();
  const std::uint32_t size = blob.size();
  const auto u = [](int v) { return std::uint16_t(v); };
  const auto i = [](int v) { return std::int16_t(v); };
  if (type == "CS1T") return vrk_log_csc1(size, data, &found, u(s.family), u(s.kind), u(s.a), u(s.b), u(s.c), u(s.d));
  if (type == "CS2T") return vrk_log_csc2(size, data, &found, u(s.family), u(s.kind), u(s.a), u(s.b), u(s.c), u(s.d));
  if (type == "HATT") return vrk_log_htone(size, data, &found, u(s.family), std::uint32_t(s.levels));
  // Newer blobs have five steps each way, older ones two, under other tags.
  if (type == "INGM") {
    return vrk_log_ingamma2(size, data, &found, u(s.family), i(s.step)) ||
           vrk_log_ingamma(size, data, &found, u(s.family), i(s.step));
  }
  if (type == "OTGM") return vrk_log_outgamma(size, data, &found, u(s.family)) != 0;
  return vrk_log_rank(size, data, &found, u(s.family), i(s.step), i(s.ink)) != 0;
}

}  // namespace

table read_table(const std::string& path) {
  constexpr std::streamsize most = std::streamsize{1} << 28, part = 1 << 16;  // no table is as long
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
  const selectors chosen = parse_selectors(selected ? argument.substr(colon + 1) : "", argument, inks);

  const table blob = read_table(path);
  const std::string type = kit::blob_type(blob.image);
  if (type.empty()) throw user_error(path + ": is no parameter blob, expected the magic \"CTSI\"");
  if (std::find(std::begin(types), std::end(types), type) == std::end(types)) {
    throw user_error(path + ": is a blob of type \"" + type + "\", expected CS1T, CS2T, HATT, INGM, OTGM or HRKT");
  }
  vrk_table_ref found{0, nullptr};
  if (!look_up(blob, type, chosen, found)) {
    throw user_error(path + ": has no table for these selectors, or a damaged header or directory (" + argument + ")");
  }
  blob_table result{path, type, {argument, kit::bytes(found.length)}};
  found.data = result.found.image.data();
  look_up(blob, type, chosen, found);
  return result;
}

}  // namespace vrk::tool
