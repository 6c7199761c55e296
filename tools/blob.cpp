#include "tools/blob.h"

#include <vrk.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <fstream>
#include <iterator>

#include "tools/user_error.h"

namespace vrk::tool {
namespace {

struct selectors {
  std::uint16_t family = 0, kind = 0, a = 0, b = 0, c = 0, d = 0;
  std::uint32_t levels = 0;
};

std::uint16_t number_or_family(const std::string& key, const std::string& value, const std::string& argument) {
  if (key == "family" && (value == "H" || value == "X")) return value == "X";
  std::uint16_t number = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  if (error != std::errc() || end != value.data() + value.size()) {
    throw user_error("--blob " + argument + ": " + key + " is \"" + value + "\", expected " +
                     (key == "family" ? "H or X" : "a number"));
  }
  return number;
}

selectors parse_selectors(std::string list, const std::string& argument, unsigned inks) {
  selectors chosen;
  chosen.levels = inks;
  while (!list.empty()) {
    const std::string item = list.substr(0, list.find(','));
    list.erase(0, item.size() + 1);
    const std::string key = item.substr(0, item.find('='));
    const std::uint16_t value = number_or_family(key, item.substr(std::min(item.size(), key.size() + 1)), argument);
    if (key == "levels") {
      chosen.levels = value;
      continue;
    }
    std::uint16_t* const field = key == "family" ? &chosen.family
                                 : key == "kind" ? &chosen.kind
                                 : key == "a"    ? &chosen.a
                                 : key == "b"    ? &chosen.b
                                 : key == "c"    ? &chosen.c
                                 : key == "d"    ? &chosen.d
                                                 : nullptr;
    if (field == nullptr) {
      throw user_error("--blob " + argument + ": \"" + key +
                       "\" is no selector, expected family, kind, a, b, c, d or levels");
    }
    *field = value;
  }
  return chosen;
}

bool look_up(const table& blob, const std::string& type, const selectors& s, vrk_table_ref& found) {
  const std::uint8_t* const data = blob.image.data();
  if (type == "CS1T") return vrk_log_csc1(blob.size(), data, &found, s.family, s.kind, s.a, s.b, s.c, s.d) != 0;
  if (type == "CS2T") return vrk_log_csc2(blob.size(), data, &found, s.family, s.kind, s.a, s.b, s.c, s.d) != 0;
  return vrk_log_htone(blob.size(), data, &found, s.family, s.levels) != 0;
}

}  // namespace

table read_table(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  table read{path, {}};
  if (file) read.image.assign(std::istreambuf_iterator<char>(file), {});
  if (!file) throw user_error(path + ": " + std::strerror(errno));
  if (read.image.empty()) throw user_error(path + ": is empty");
  return read;
}

table read_from_blob(const std::string& argument, unsigned inks) {
  const std::size_t colon = argument.rfind(':');
  const bool selected = colon != std::string::npos && argument.find('=', colon) != std::string::npos;
  const std::string path = selected ? argument.substr(0, colon) : argument;
  const selectors chosen = parse_selectors(selected ? argument.substr(colon + 1) : "", argument, inks);

  const table blob = read_table(path);
  if (blob.size() < 8 || std::memcmp(blob.image.data(), "CTSI", 4) != 0) {
    throw user_error(path + ": is no parameter blob, expected the magic \"CTSI\"");
  }
  const std::string type(blob.image.begin() + 4, blob.image.begin() + 8);
  if (type != "CS1T" && type != "CS2T" && type != "HATT") {
    throw user_error(path + ": is a blob of type \"" + type + "\", expected \"CS1T\", \"CS2T\" or \"HATT\"");
  }
  vrk_table_ref found{0, nullptr};
  if (!look_up(blob, type, chosen, found)) {
    throw user_error(path + ": has no table for these selectors, or a damaged header or directory (" + argument + ")");
  }
  table result{argument, kit::bytes(found.length)};
  found.data = result.image.data();
  look_up(blob, type, chosen, found);
  return result;
}

}  // namespace vrk::tool
