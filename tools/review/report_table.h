// The report as text.
#pragma once

#include "tools/review/photographs.h"
#include "tools/review/report_measures.h"

namespace vrk::tool {

// Tables on standard output. Below that of the patches, a sentence for each tone that is not kept and each structure
// that shows.
void show(const std::vector<choice_report>& reports, const report_options& options);
void show(const std::vector<photograph_row>& rows, const std::vector<photograph>& photographs,
          const report_options& options);

}  // namespace vrk::tool
