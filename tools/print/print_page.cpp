#include "tools/print/print_page.h"

#include <tbb/info.h>

#include "tools/page/placement.h"
#include "tools/print/manifest.h"
#include "tools/print/print_lines.h"
#include "tools/print/print_pipeline.h"

namespace vrk::tool {

print_report print_page(image_reader& source, const print_options& options, output_set& to) {
  return page_printer(options).print(source, to);
}

print_report page_printer::print(image_reader& source, output_set& to) {
  const line_format format{source.channels(), source.bits()};
  if (!tables_ || format.samples != samples_ || format.bits != bits_ || source.profile() != profile_) {
    samples_ = format.samples;
    bits_ = format.bits;
    profile_ = source.profile();
    const table inks{"the profile of " + source.name(), source.channels() == 4 ? profile_ : kit::bytes{}};
    tables_ = choose_tables(options_, format, inks);
  }
  for (const std::string& file : tables_->files) to.protect(file);
  pipeline stages = make_print_pipeline(*tables_, options_.layout, options_.precision(), source.width(), format);
  return print_through(stages, source, *tables_, options_, to);
}

print_report print_through(pipeline& stages, image_reader& source, const print_tables& tables,
                           const print_options& options, output_set& to) {
  const unsigned width = source.width(), height = source.height();
  const unsigned threads = options.threads != 0 ? options.threads : unsigned(tbb::info::default_concurrency());
  const std::optional<pixel_place>& centre = options.pictures.detail_centre;
  if (centre) require_inside("--detail", *centre, width, height);
  const resolution dpi = source.dpi().value_or(usual_dpi);
  if (options.one_file && options.format == print_format::planes && stages.planes().size() != 1) {
    throw usage_error("-o - takes one file, and the planes would be " + std::to_string(stages.planes().size()) +
                      ": expected --inks 1 or --format tiff, cups or pwg");
  }
  const plane_order order = options.order.value_or(plane_order::chunky);
  page_files files(to, stages.planes(), {width, height, dpi}, options.format, order, options.pictures, tables.look);
  stopwatch all;
  const double reading = all.time([&] { return print_lines(source, stages, files, threads, options.silent); });

  print_report report{source.name(), width, height, source.channels(), source.bits(), dpi, threads};
  report.seconds = all.seconds();
  report.colors = source.colors();
  for (std::size_t p = 0; p < files.planes(); ++p) {
    report.planes.push_back({std::string(files.format(p).name), files.place(p).file, files.coverage(p)});
  }
  report.times.push_back({"read", {}, reading});
  for (stage_time& t : stages.times()) report.times.push_back(std::move(t));
  if (files.drawn()) report.times.push_back({"draw pictures", {}, files.seconds_drawing()});
  report.times.push_back({"write planes", {}, files.seconds_writing()});
  files.finish();
  add_manifest(source, files, tables, to);
  report.files = to.paths();
  report.tables = tables.files;
  to.keep([&] { return files_of_manifest(to.directory()); });
  return report;
}

}  // namespace vrk::tool
