// Several pages, each printed into a directory of its own.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/print/print_page.h"

namespace vrk::tool {

struct page_source {
  std::string name;                                       // for the manifest
  std::function<std::unique_ptr<image_reader>()> next{};  // null behind the last page
  std::vector<std::string> inputs{};                      // files that are not to be overwritten
};

// Writes page-001, page-002, ..., each as print_page does, and a manifest of all of them below the directory. A page is
// kept and told as soon as it is complete: when a later one fails, those before it are there and in the manifest, and
// those of an earlier print are not.
void print_pages(const page_source& pages, page_printer& printer, const std::string& directory,
                 const std::function<void(const print_report&)>& tell);

// One file per page, all of them to standard output; of raster streams, one stream. A page goes there when it is
// complete.
void print_pages_to_standard_output(const page_source& pages, print_options options,
                                    const std::function<void(const print_report&)>& tell);

}  // namespace vrk::tool
