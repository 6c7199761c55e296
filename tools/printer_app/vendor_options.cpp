#include "tools/printer_app/vendor_options.h"

#include <algorithm>
#include <array>
#include <memory>
#include <sstream>

#include "tools/command_line/option_facts.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

// Of no use to who prints: matters of the machine, which is the same for all jobs.
constexpr std::array<std::string_view, 5> left_out{"layout", "threads", "max-memory", "max-width", "max-height"};

std::vector<vendor_option> read_options() {
  job_options unused;
  CLI::App command("", "print");
  command.set_help_flag();
  add_job_options(command, unused);
  std::vector<vendor_option> all;
  for (const CLI::Option* const option : shown_options(command)) {
    const std::string name = option->get_single_name();
    if (!is_job_option(*option, job_kind::pages) || std::ranges::find(left_out, name) != left_out.end()) continue;
    const option_facts facts = facts_of(*option);
    vendor_option made{"vrk-" + name,
                       name,
                       option->get_description(),
                       facts.words,
                       option->get_expected_max() == 0,
                       facts.is_file() || name == "settings",
                       option->get_expected_max() > 16};
    if (!made.words.empty()) made.words.insert(made.words.begin(), not_given);
    all.push_back(std::move(made));
  }
  if (all.size() > PAPPL_MAX_VENDOR) throw user_error("there are more options than PAPPL takes");
  return all;
}

// The values of an attribute, or one text with all of them.
std::vector<std::string> values_of(ipp_attribute_t* attribute) {
  std::vector<std::string> values;
  for (int i = 0; i < ippGetCount(attribute); ++i) {
    const char* const text = ippGetString(attribute, i, nullptr);
    if (text != nullptr) values.emplace_back(text);
  }
  if (!values.empty() || attribute == nullptr) return values;
  std::array<char, 1024> text{};  // a number or a truth
  ippAttributeString(attribute, text.data(), text.size());
  return {text.data()};
}

void add_values(const vendor_option& option, const std::vector<std::string>& values, std::vector<job_option>& to) {
  for (const std::string& value : values) {
    if (value.empty() || value == not_given) continue;
    std::istringstream words(value);
    if (!option.repeated) {
      to.push_back({option.option, value});
    } else {
      for (std::string word; words >> word;) to.push_back({option.option, word});
    }
  }
}

}  // namespace

const std::vector<vendor_option>& vendor_options() {
  static const std::vector<vendor_option> all = read_options();
  return all;
}

void add_vendor_options(pappl_pr_driver_data_t& record, ipp_t& attributes) {
  for (const vendor_option& option : vendor_options()) {
    record.vendor[record.num_vendor++] = option.name.c_str();
    const std::string supported = option.name + "-supported", usual = option.name + "-default";
    if (option.flag) {
      ippAddBoolean(&attributes, IPP_TAG_PRINTER, supported.c_str(), 1);
      ippAddBoolean(&attributes, IPP_TAG_PRINTER, usual.c_str(), 0);
    } else if (!option.words.empty()) {
      std::vector<const char*> words;
      for (const std::string& word : option.words) words.push_back(word.c_str());
      ippAddStrings(&attributes, IPP_TAG_PRINTER, IPP_TAG_KEYWORD, supported.c_str(), int(words.size()), nullptr,
                    words.data());
      ippAddString(&attributes, IPP_TAG_PRINTER, IPP_TAG_KEYWORD, usual.c_str(), nullptr, not_given);
    } else {
      ippAddString(&attributes, IPP_TAG_PRINTER, IPP_TAG_TEXT, usual.c_str(), nullptr, "");
    }
  }
}

void add_vendor_labels(pappl_system_t* system) {
  std::string strings;
  for (const vendor_option& option : vendor_options()) {
    std::string help = option.help;
    std::ranges::replace(help, '"', '\'');
    strings += "\"" + option.name + "\" = \"" + option.option + ": " + help + "\";\n";
  }
  static const std::string kept = strings;  // PAPPL does not copy them
  constexpr const char* resource = "/vrk.strings";
  papplSystemAddStringsData(system, resource, "en", kept.c_str());
  papplSystemRemoveResource(system, resource);  // the names stay; with it, every request would make a printer larger
}

std::vector<job_option> options_of(pappl_job_t* job) {
  const std::unique_ptr<ipp_t, decltype([](ipp_t* attributes) { ippDelete(attributes); })> printer(
      papplPrinterGetDriverAttributes(papplJobGetPrinter(job)));
  std::vector<job_option> given;
  for (const vendor_option& option : vendor_options()) {
    ipp_attribute_t* const own = papplJobGetAttribute(job, option.name.c_str());
    const std::string usual = option.name + "-default";
    const std::vector<std::string> usual_values =
        values_of(ippFindAttribute(printer.get(), usual.c_str(), IPP_TAG_ZERO));
    const std::vector<std::string> values = own != nullptr ? values_of(own) : usual_values;
    if (option.file && values != usual_values) {
      throw usage_error(option.name + ": names a file of the machine that prints, which only the printer's own " +
                        "defaults may");
    }
    add_values(option, values, given);
  }
  return given;
}

}  // namespace vrk::tool
