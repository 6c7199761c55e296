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

// The files that the manifest in this directory names, as far as a print can have written them. None when there is no
// manifest, or something else under its name.
std::vector<std::string> files_of_manifest(const std::filesystem::path& directory);

}  // namespace vrk::tool
