// The report as text.
#pragma once

#include "tools/review/report_measures.h"

namespace vrk::tool {

// A table on standard output, and below it a sentence for each tone that is not kept and each structure that shows.
void show(const std::vector<choice_report>& reports, const report_options& options);

}  // namespace vrk::tool
