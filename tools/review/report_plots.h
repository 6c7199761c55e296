// The report as pictures.
#pragma once

#include "tools/files/output_set.h"
#include "tools/review/photographs.h"
#include "tools/review/report_measures.h"

namespace vrk::tool {

// Each writes a sheet with one chart for every choice.
void plot_tones(const std::vector<choice_report>& reports, const report_options& options, output_file& to);
void plot_spectra(const std::vector<choice_report>& reports, const report_options& options, output_file& to);
void plot_noise(const std::vector<choice_report>& reports, const report_options& options, output_file& to);

// A bar for every figure of every row.
void plot_photographs(const std::vector<photograph_row>& rows, const std::vector<photograph>& photographs,
                      const report_options& options, output_file& to);

}  // namespace vrk::tool
