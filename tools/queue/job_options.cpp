#include "tools/queue/job_options.h"

#include <algorithm>

#include "tools/command_line/settings.h"
#include "tools/page/page_arguments.h"
#include "tools/pipeline/user_error.h"
#include "tools/print/print_arguments.h"

namespace vrk::tool {
namespace {

// As words of a command line.
std::vector<std::string> words_of(const std::vector<job_option>& given, const CLI::App& command, job_kind kind) {
  std::vector<std::string> words;
  for (const auto& [name, value] : given) {
    const CLI::Option* const option = command.get_option_no_throw("--" + name);
    if (option == nullptr || !is_job_option(*option, kind)) {
      throw usage_error("\"" + name + "\" is no option of a job, expected one of vrk print without --" +
                        (kind == job_kind::pages ? ", but for the size on paper and pictures of the print" : ""));
    }
    if (option->get_expected_max() == 0 && value == "false") continue;  // a flag, as if it were not there
    words.push_back("--" + name + "=" + value);
  }
  std::ranges::reverse(words);  // as CLI11 takes them
  return words;
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

job_options read_job_options(const std::vector<job_option>& given, job_kind kind) {
  job_options read;
  CLI::App command("", "print");
  command.set_help_flag();
  add_job_options(command, read);
  try {
    command.parse(words_of(given, command, kind));
  } catch (const CLI::ParseError& error) {
    throw usage_error(error.what());
  }
  read.print.pictures = {};
  if (kind == job_kind::pages) read.page = {};
  return read;
}

}  // namespace vrk::tool
