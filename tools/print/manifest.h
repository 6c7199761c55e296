// manifest.json: which files of a directory belong together, as one print.
#pragma once

#include <string>
#include <vector>

#include "tools/files/output_set.h"
#include "tools/image/image_reader.h"
#include "tools/print/page_files.h"
#include "tools/print/print_tables.h"

namespace vrk::tool {

// Adds the manifest of a print to its files. files: after the last line.
void add_manifest(const image_reader& source, const page_files& files, const print_tables& tables, output_set& to);

// Pages of one print, each with a manifest in a directory of its own.
struct printed_page {
  std::string directory;           // from page_directory
  std::vector<std::string> files;  // of its planes
};
std::string page_directory(unsigned page);  // page: from 1

// Adds the manifest of all pages. source: what they come from.
void add_manifest(const std::string& source, const std::vector<printed_page>& pages, output_set& to);

// The files that the manifest in this directory names, and those of pages in directories of their own, as far as a
// print can have written them. None when there is no manifest, or something else under its name.
std::vector<std::string> files_of_manifest(const std::filesystem::path& directory);

}  // namespace vrk::tool
