// Planes that another program made of the photographs of a report.
#pragma once

#include "tools/review/photographs.h"

namespace vrk::tool {

// What the path of a plane says. Its file name ends in the name of its plane, alone or behind "-", "_" or ".": k, c, m,
// y, lc, lm. What stands before it in the file name, or one of the directories, is the name of its photograph; if there
// is only one photograph, it need not be named. The program is the last directory that is no photograph.
struct plane_path {
  std::string program;  // "other" where no directory names it
  std::size_t photograph, plane;
};

// inks: of the photographs. Throws user_error, naming the file, where one of the names is missing or unknown.
plane_path read_plane_path(const std::string& path, const std::vector<std::string>& photographs, unsigned inks);

// A row for every program, in the order of the files. Throws user_error where a file is no PBM of the photograph's
// size, or stands for the same plane as another.
std::vector<photograph_row> measure_others(const std::vector<photograph>& photographs, const report_options& options);

}  // namespace vrk::tool
