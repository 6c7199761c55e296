#include "tools/print/print_pages.h"

#include "tools/files/standard_output.h"
#include "tools/files/temporary_directory.h"
#include "tools/pipeline/user_error.h"
#include "tools/print/manifest.h"

namespace vrk::tool {
namespace {

void keep_manifest(const page_source& pages, const std::vector<printed_page>& done, const std::string& directory) {
  output_set files(directory);
  for (const std::string& input : pages.inputs) files.protect(input);
  add_manifest(pages.name, done, files);
  if (done.size() > 1) return files.keep();  // what an earlier print had left went with the first page
  files.keep([&] {
    std::vector<std::string> old = files_of_manifest(directory);
    std::erase_if(old, [&](const std::string& file) { return file.starts_with(done[0].directory + "/"); });
    return old;
  });
}

}  // namespace

void print_pages(const page_source& pages, page_printer& printer, const std::string& directory,
                 const std::function<void(const print_report&)>& tell) {
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

// TIFF is not written from front to back, and of a page that fails nothing is to be seen.
void print_pages_to_standard_output(const page_source& pages, print_options options,
                                    const std::function<void(const print_report&)>& tell) {
  options.one_file = true;
  options.pictures.drawn = false;
  page_printer printer(options);
  bool first = true;
  while (const std::unique_ptr<image_reader> page = pages.next()) {
    const temporary_directory directory(place_for_temporary_files());
    output_set files(directory.path());
    print_report report = printer.print(*page, files);
    if (!is_raster_stream(options.format) && pages.next() != nullptr) {
      throw user_error(pages.name + ": has several pages, expected one, or --format cups or pwg with -o -");
    }
    copy_to_standard_output(directory.path() / report.planes[0].file, first ? 0 : raster_stream_start);
    first = false;
    report.files = {"standard output"};
    for (print_report::plane& plane : report.planes) plane.file = "standard output";
    tell(report);
  }
}

}  // namespace vrk::tool
