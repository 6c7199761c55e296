#include "tools/print/print_pages.h"

#include <algorithm>

#include "tools/print/manifest.h"

namespace vrk::tool {
namespace {

void keep_manifest(const page_source& pages, const std::vector<printed_page>& done, const std::string& directory) {
  output_set files(directory);
  for (const std::string& input : pages.inputs) files.protect(input);
  add_manifest(pages.name, done, files);
  const auto is_new = [&](const std::string& file) {
    return std::ranges::any_of(done, [&](const printed_page& page) { return file.starts_with(page.directory + "/"); });
  };
  files.keep([&] {
    std::vector<std::string> old = files_of_manifest(directory);
    std::erase_if(old, is_new);
    return old;
  });
}

}  // namespace

void print_pages(const page_source& pages, const print_options& options, const std::string& directory,
                 const std::function<void(const print_report&)>& tell) {
  page_printer printer(options);
  std::vector<printed_page> done;
  while (const std::unique_ptr<image_reader> page = pages.next()) {
    const std::string name = page_directory(unsigned(done.size()) + 1);
    output_set files(std::filesystem::path(directory) / name);
    for (const std::string& input : pages.inputs) files.protect(input);
    const print_report report = printer.print(*page, files);
    done.push_back({name, {}});
    for (const print_report::plane& plane : report.planes) {
      std::vector<std::string>& names = done.back().files;
      if (names.empty() || names.back() != plane.file) names.push_back(plane.file);
    }
    keep_manifest(pages, done, directory);
    tell(report);
  }
}

}  // namespace vrk::tool
