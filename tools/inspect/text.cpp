#include "tools/inspect/text.h"

#include <algorithm>

namespace vrk::tool {
namespace {

constexpr std::size_t line_length = 118;

bool is_plain(const tree& value) { return !value.is_structured(); }
bool holds_plain(const tree& values) { return std::all_of(values.begin(), values.end(), is_plain); }
bool holds_numbers(const tree& list) {
  return std::all_of(list.begin(), list.end(), [](const tree& v) { return v.is_number(); });
}
bool is_matrix(const tree& list) {
  return list.is_array() && !list.empty() && list[0].is_array() && !list[0].empty() && holds_numbers(list[0]);
}

std::string text_of_plain(const tree& value) {
  if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
  if (!value.is_string()) return value.dump();
  const std::string text = value.get<std::string>();
  const bool clear = !text.empty() && text.front() != ' ' && text.back() != ' ';
  return clear ? text : '"' + text + '"';
}

std::string joined(const tree& list, const char* separator) {
  std::string text;
  for (const tree& value : list) text += (text.empty() ? "" : separator) + text_of_plain(value);
  return text;
}

std::string text_of_numbers(const tree& list) {
  constexpr std::size_t most = 17, at_front = 4;
  if (list.size() <= most) return joined(list, ", ");
  const auto [smallest, largest] = std::minmax_element(list.begin(), list.end());
  return joined(tree(list.begin(), list.begin() + at_front), ", ") + " ... " + text_of_plain(list.back()) + " (" +
         std::to_string(list.size()) + " numbers, " + text_of_plain(*smallest) + " to " + text_of_plain(*largest) + ")";
}

std::optional<std::string> inline_text(const tree& value);

// Members that hold members again have them in brackets.
std::optional<std::string> inline_members(const tree& object) {
  std::string text;
  for (const auto& [name, member] : object.items()) {
    const auto inner = is_plain(member) || member.is_object() ? inline_text(member) : std::nullopt;
    if (!inner) return {};
    text.append(text.empty() ? "" : ", ").append(name).append(" ");
    text += is_plain(member) ? *inner : '(' + *inner + ')';
  }
  return text;
}

// The value in what remains of a line; none if it takes lines of its own.
std::optional<std::string> inline_text(const tree& value) {
  if (is_plain(value)) return text_of_plain(value);
  if (value.empty()) return "none";
  if (value.is_object()) return inline_members(value);
  if (holds_numbers(value)) return text_of_numbers(value);
  if (is_matrix(value)) {
    return std::to_string(value.size()) + " rows of " + std::to_string(value[0].size()) + " numbers";
  }
  if (holds_plain(value)) return joined(value, "; ");
  return {};
}

void put(std::string& text, const std::string& margin, const std::string& name, const tree& value) {
  const std::optional<std::string> in_line = inline_text(value);
  if (in_line && (!value.is_object() || margin.size() + name.size() + 2 + in_line->size() <= line_length)) {
    text += margin + name + ": " + *in_line + "\n";
  } else if (value.is_object()) {
    text += margin + name + ":\n" + text_of(value, margin + "  ");
  } else {
    text += margin + name + ":\n";
    for (const tree& element : value) {
      std::string lines = text_of(element, margin + "    ");
      lines[margin.size() + 2] = '-';
      text += lines;
    }
  }
}

}  // namespace

std::string text_of(const tree& told, const std::string& margin) {
  std::string text;
  for (const auto& [name, value] : told.items()) put(text, margin, name, value);
  return text;
}

}  // namespace vrk::tool
