#include "tools/queue/ppd_options.h"

#include <cups/cups.h>
#include <cups/ppd.h>
#include <strings.h>

#include <algorithm>
#include <memory>
#include <span>
#include <string_view>

#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

constexpr std::string_view next_filter_name = "VrkNextFilter", media_table_name = "VrkMediaTable";

class cups_options {
 public:
  explicit cups_options(const std::string& text) : count_(cupsParseOptions(text.c_str(), 0, &options_)) {}
  ~cups_options() { cupsFreeOptions(count_, options_); }
  cups_options(const cups_options&) = delete;
  cups_options& operator=(const cups_options&) = delete;

  std::span<const cups_option_t> all() const { return {options_, std::size_t(count_)}; }

 private:
  cups_option_t* options_ = nullptr;
  int count_;
};

bool is_own(const std::string& name) { return strncasecmp(name.c_str(), "vrk", 3) == 0; }

// libcups says that PPD files are going away. As long as queues have them, drivers read them.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

using ppd_file = std::unique_ptr<ppd_file_t, decltype([](ppd_file_t* file) { ppdClose(file); })>;

ppd_file open_ppd(const std::string& path) {
  ppd_file file(ppdOpenFile(path.c_str()));
  if (file != nullptr) return file;
  int line = 0;
  const ppd_status_t why = ppdLastError(&line);
  throw user_error(path + ", line " + std::to_string(line) + ": is no PPD file: " + ppdErrorString(why));
}

std::string name_of(const std::string& written, const std::string& where) {
  const std::optional<std::string> name = job_option_name(written, job_kind::pages);
  if (name) return *name;
  throw usage_error(where + ": " + written + " is no option of a print queue, expected one of vrk print, such as " +
                    "vrk-ink-limit (VrkInkLimit in PPD files)");
}

// What the job says by names of its own or of the PPD file. file: may be null
std::vector<job_option> options_of(const cups_options& given, ppd_file_t* file) {
  std::vector<job_option> options;
  for (const auto& [name, value] : given.all()) {
    if (is_own(name)) {
      options.push_back({name_of(name, "the job"), value});
    } else if (job_option_name(name, job_kind::pages) == name &&
               (file == nullptr || ppdFindOption(file, name) == nullptr)) {
      options.push_back({name, value});
    }
  }
  return options;
}

std::vector<job_option> choices_of(ppd_file_t& file, const std::vector<job_option>& job) {
  std::vector<job_option> choices;
  for (const ppd_group_t& group : std::span(file.groups, std::size_t(file.num_groups))) {
    for (const ppd_option_t& option : std::span(group.options, std::size_t(group.num_options))) {
      if (!is_own(option.keyword)) continue;
      const std::string name = name_of(option.keyword, "the PPD file");
      const ppd_choice_t* const choice = ppdFindMarkedChoice(&file, option.keyword);
      if (choice == nullptr || std::ranges::count(job, name, &job_option::name) != 0) continue;
      choices.push_back({name, choice->choice});
    }
  }
  return choices;
}

void add_attributes(const ppd_file_t& file, queue_options& to) {
  for (const ppd_attr_t* const attribute : std::span(file.attrs, std::size_t(file.num_attrs))) {
    const std::string written = attribute->name, value = attribute->value == nullptr ? "" : attribute->value;
    if (!is_own(written)) continue;
    if (written == next_filter_name) {
      to.next_filter = value;
      continue;
    }
    const std::string name = name_of(written, "the PPD file");
    to.queue.push_back({name, written == media_table_name ? attribute->spec + ("=" + value) : value});
  }
}

}  // namespace

queue_options read_queue_options(const std::string& path, const std::string& options) {
  const cups_options given(options);
  queue_options read;
  if (path.empty()) {
    read.job = options_of(given, nullptr);
  } else {
    const ppd_file file = open_ppd(path);
    ppdMarkDefaults(file.get());
    read.job = options_of(given, file.get());
    read.queue = choices_of(*file, read.job);
    add_attributes(*file, read);
  }
  const auto says_nothing = [](const job_option& option) { return option.value == "Default"; };
  std::erase_if(read.job, says_nothing);
  std::erase_if(read.queue, says_nothing);
  return read;
}

#pragma GCC diagnostic pop

}  // namespace vrk::tool
