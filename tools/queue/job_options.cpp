#include "tools/queue/job_options.h"

#include <algorithm>
#include <map>

#include "tools/command_line/option_facts.h"
#include "tools/command_line/settings.h"
#include "tools/page/page_arguments.h"
#include "tools/pipeline/user_error.h"
#include "tools/print/print_arguments.h"

namespace vrk::tool {
namespace {

const CLI::Option& find_option(const CLI::App& command, const std::string& name, job_kind kind) {
  const CLI::Option* const option = command.get_option_no_throw("--" + name);
  if (option != nullptr && is_job_option(*option, kind)) return *option;
  throw usage_error("\"" + name + "\" is no option of a job, expected one of vrk print without --" +
                    (kind == job_kind::pages ? ", but for the size on paper and pictures of the print" : ""));
}

// As words of a command line.
std::vector<std::string> words_of(const std::vector<job_option>& job, const CLI::App& command, job_kind kind) {
  std::vector<std::string> words;
  for (const auto& [name, value] : job) {
    const CLI::Option& option = find_option(command, name, kind);
    if (value == "false" && !option.get_needs().empty()) continue;  // what is off needs nothing else to be there
    words.push_back("--" + name + "=" + value);
  }
  return words;
}

// What the queue says counts where the command has nothing, its settings file where the queue has nothing.
void add_queue(CLI::App& command, const std::vector<job_option>& queue, job_kind kind) {
  std::vector<named_setting> settings;
  std::string file;
  for (const auto& [name, value] : queue) {
    find_option(command, name, kind);
    if (name == "settings") {
      file = value;
      continue;
    }
    auto known = std::ranges::find(settings, name, &named_setting::name);
    if (known == settings.end()) known = settings.insert(known, {name, {}});
    known->values.push_back(value);
  }
  add_settings(command, settings, "the queue");
  if (!file.empty()) load_settings(command, file);
}

// Letters and digits, in lower case.
std::string letters_of(const std::string& name) {
  std::string letters;
  for (const char c : name) {
    if (c != '-') letters += char(std::tolower(static_cast<unsigned char>(c)));
  }
  return letters;
}

using names = std::map<std::string, std::string>;  // of options, by their letters

names names_of(job_kind kind) {
  job_options unused;
  CLI::App command;
  command.set_help_flag();
  add_job_options(command, unused);
  names all;
  for (const CLI::Option* const option : shown_options(command)) {
    const std::string name = option->get_single_name();
    if (is_job_option(*option, kind)) all.emplace(letters_of(name), name);
  }
  return all;
}

// To define all options takes long, and a queue and its jobs name many.
const names& known_names(job_kind kind) {
  if (kind == job_kind::pages) {
    static const names pages = names_of(kind);
    return pages;
  }
  static const names picture = names_of(kind);
  return picture;
}

}  // namespace

void add_job_options(CLI::App& command, job_options& to) {
  add_settings_option(command);
  add_picture_options(command, to.picture);
  add_page_options(command, to.page);
  add_print_options(command, to.print);
  add_detail_option(command, to.print.pictures);
}

bool is_job_option(const CLI::Option& option, job_kind kind) {
  if (option.check_lname("settings")) return true;
  return option.get_configurable() && option.get_group() != picture_group &&
         (kind == job_kind::picture || option.get_group() != paper_group);
}

std::optional<std::string> job_option_name(const std::string& written, job_kind kind) {
  std::string letters = letters_of(written);
  if (letters.starts_with("vrk")) letters.erase(0, 3);
  const names& known = known_names(kind);
  const auto found = known.find(letters);
  return found == known.end() ? std::nullopt : std::optional(found->second);
}

job_options read_job_options(const std::vector<job_option>& job, job_kind kind, const std::vector<job_option>& queue) {
  job_options read;
  CLI::App command("", "print");
  command.set_help_flag();
  add_job_options(command, read);
  // Called after that of --settings, and before the checks of what options need of each other.
  const std::string last = "queue";
  command.add_flag_callback("--" + last, [&] { add_queue(command, queue, kind); })->configurable(false);
  std::vector<std::string> words = words_of(job, command, kind);
  words.push_back("--" + last);
  std::ranges::reverse(words);  // as CLI11 takes them
  try {
    command.parse(words);
  } catch (const CLI::ParseError& error) {
    throw usage_error(error.what());
  }
  read.print.pictures = {};
  if (kind == job_kind::pages) read.page = {};
  return read;
}

}  // namespace vrk::tool
