#include "tools/printer_app/test_page.h"

#include <cstring>
#include <vector>

#include "tools/image/image_reader.h"
#include "tools/image/image_writer.h"
#include "tools/printer_app/application.h"
#include "tools/printer_app/guarded.h"

namespace vrk::tool {

const char* make_test_page(pappl_printer_t* printer, char* path, std::size_t size) {
  const std::string why = complaint_of([&] {
    constexpr unsigned dpi = 150;
    const auto page = read_sample_page(dpi);
    output_set files(state_directory());
    output_file& file = files.add("sample.png");
    const auto writer = write_png(file, page->width(), page->height(), page->dpi());
    std::vector<std::uint8_t> line(page->line_bytes());
    for (unsigned y = 0; y < page->height(); ++y) {
      page->read_line(line.data());
      writer->write_line(line.data());
    }
    writer->finish();
    std::strncpy(path, file.path().c_str(), size - 1);
    path[size - 1] = '\0';
    files.keep();
  });
  if (why.empty()) return path;
  papplLogPrinter(printer, PAPPL_LOGLEVEL_ERROR, "%s", why.c_str());
  return nullptr;
}

}  // namespace vrk::tool
