// One print: a picture in, plane files and pictures of the dots out.
#pragma once

#include "tools/files/output_set.h"
#include "tools/image/image_reader.h"
#include "tools/pipeline/pipeline.h"
#include "tools/print/print_options.h"
#include "tools/print/print_report.h"
#include "tools/print/print_tables.h"

namespace vrk::tool {

// Writes <plane>.pbm (.pgm above one bit) or print.tif, manifest.json, and preview.png and detail.png where pictures
// are drawn, and keeps them. Files that an earlier print in this directory has left and this one does not replace are
// removed. A pixel of the source is a dot, or a cell of dots, at the source's resolution, which is usual_dpi where it
// has none.
print_report print_page(image_reader& source, const print_options& options, output_set& to);

// Prints pages with the same options. Tables are made again only for a page whose samples are of another kind, or
// whose type of media selects others.
class page_printer {
 public:
  explicit page_printer(const print_options& options) : options_(options) {}
  print_report print(image_reader& source, output_set& to);  // as print_page

  const print_tables& tables() const { return *tables_; }  // of the last page

 private:
  print_options options_;
  std::optional<print_tables> tables_;
  unsigned samples_ = 0, bits_ = 0;  // of the page that they were made for
  kit::bytes profile_{};
  std::vector<std::string> media_{};
};

// The same through a pipeline that was made of these tables.
print_report print_through(pipeline& stages, image_reader& source, const print_tables& tables,
                           const print_options& options, output_set& to);

}  // namespace vrk::tool
