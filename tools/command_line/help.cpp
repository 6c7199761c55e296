#include "tools/command_line/help.h"

#include <algorithm>
#include <set>
#include <sstream>

#include "tools/command_line/option_facts.h"
#include "tools/commands.h"

namespace vrk::tool {
namespace {

constexpr std::size_t columns = 80, description_column = 28;

// The words of the text in lines that begin in this column; the first line is there already.
std::string wrapped(const std::string& text, std::size_t column) {
  std::istringstream words(text);
  std::string lines;
  std::size_t at = column;
  for (std::string word; words >> word; at += word.size()) {
    if (at != column && at + 1 + word.size() >= columns) {
      lines += "\n" + std::string(column, ' ');
      at = column;
    } else if (at != column) {
      lines += ' ';
      ++at;
    }
    lines += word;
  }
  return lines;
}

std::string entry(std::string name, const std::string& description) {
  name = "  " + name;
  const bool beside = name.size() + 2 <= description_column;
  const std::string gap(beside ? description_column - name.size() : description_column, ' ');
  return name + (beside ? "" : "\n") + gap + wrapped(description, description_column) + "\n";
}

std::string joined(const std::vector<std::string>& texts, const char* separator) {
  return CLI::detail::join(texts, separator);
}

// In brackets behind the text, which may end with some already.
std::string with_notes(std::string text, const std::string& notes) {
  if (notes.empty()) return text;
  const bool bracketed = text.ends_with(')');
  if (bracketed) text.pop_back();
  return text + (bracketed ? "; " : " (") + notes + ")";
}

std::string names_of(const std::set<CLI::Option*>& options) {
  std::vector<std::string> names;
  for (const CLI::Option* const option : options) names.push_back(option->get_name());
  std::sort(names.begin(), names.end());
  return joined(names, ", ");
}

}  // namespace

std::string help_format::make_description(const CLI::App* app) const {
  return wrapped(app->get_description(), 0) + "\n";
}

std::string help_format::make_option(const CLI::Option* option, bool is_positional) const {
  const option_facts facts = facts_of(*option);
  std::string name = is_positional ? option->get_name(true, false)
                                   : joined(CLI::detail::split(option->get_name(false, true), ','), ", ");
  std::vector<std::string> notes;
  if (!facts.type.empty() && !is_positional) {
    const std::string words = name + ' ' + joined(facts.words, "|");
    const bool beside = !facts.words.empty() && words.size() + 2 < columns;
    name = beside ? words : name + ' ' + facts.type;
    if (!beside && !facts.words.empty()) notes.push_back("one of " + joined(facts.words, ", "));
  }
  if (option->get_expected_max() == CLI::detail::expected_max_vector_size) name += " ...";
  if (!facts.range.empty()) notes.push_back(facts.range);
  if (!option->get_default_str().empty()) notes.push_back("default " + option->get_default_str());
  if (option->get_required() && !is_positional) notes.emplace_back("required");
  if (!option->get_needs().empty()) notes.push_back("with " + names_of(option->get_needs()));
  if (!option->get_excludes().empty()) notes.push_back("not with " + names_of(option->get_excludes()));
  return entry(name, with_notes(option->get_description(), joined(notes, "; ")));
}

std::string help_format::make_subcommand(const CLI::App* command) const {
  return entry(command->get_name(), command->get_description());
}

std::string help_format::make_footer(const CLI::App* app) const {
  std::istringstream lines(app->get_footer());
  std::string text;
  for (std::string line; std::getline(lines, line);) text += (line.starts_with(' ') ? line : wrapped(line, 0)) + "\n";
  return text;
}

std::string help_footer(std::initializer_list<std::string> examples, std::initializer_list<std::string> paragraphs) {
  std::string text = "Examples:\n";
  for (const std::string& example : examples) text += "  " + example + "\n";
  for (const std::string& paragraph : paragraphs) text += "\n" + paragraph + "\n";
  return text + "\n" + exit_help;
}

}  // namespace vrk::tool
