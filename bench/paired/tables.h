// What is measured, and the tables of it, in Markdown.
#pragma once

#include "bench/paired/session.h"

namespace vrk::bench {

// pictures: beside the built-in ones; each table shows the lowest ratio of all of them.
void print_bars(session& measure, const std::vector<input>& pictures);

// Error diffusion on planes with many samples of 0, which some rows treat apart.
void print_zeros(session& measure, const std::vector<input>& pictures);

// Tables, runs, layouts and widths that fast rows do not serve, or serve worst: not slower than before.
void print_hard_cases(session& measure);

// Rates at all widths.
void print_widths(session& measure);

}  // namespace vrk::bench
