#include "tools/print/print_page.h"

#include <strings.h>
#include <tbb/info.h>

#include "tools/page/placement.h"
#include "tools/print/manifest.h"
#include "tools/print/print_lines.h"
#include "tools/print/print_pipeline.h"
#include "tools/raster/page_header.h"

namespace vrk::tool {
namespace {

// What the page's type of media selects.
std::vector<std::string> blobs_for(const image_reader& page, const std::vector<std::string>& media) {
  std::vector<std::string> blobs;
  if (page.header() == nullptr) return blobs;
  for (const std::string& entry : media) {
    const std::size_t equals = entry.find('=');
    if (strcasecmp(entry.substr(0, equals).c_str(), page.header()->cups.MediaType) == 0) {
      blobs.push_back(entry.substr(equals + 1));
    }
  }
  return blobs;
}

}  // namespace

print_report print_page(image_reader& source, const print_options& options, output_set& to) {
  return page_printer(options).print(source, to);
}

print_report page_printer::print(image_reader& source, output_set& to) {
  const line_format format{source.channels(), source.bits()};
  const std::vector<std::string> media = blobs_for(source, options_.files.media);
  if (!tables_ || format.samples != samples_ || format.bits != bits_ || source.profile() != profile_ ||
      media != media_) {
    samples_ = format.samples;
    bits_ = format.bits;
    profile_ = source.profile();
    const table inks{"the profile of " + source.name(), source.channels() == 4 ? profile_ : kit::bytes{}};
    media_ = media;
    print_options options = options_;
    options.files.blobs.insert(options.files.blobs.end(), media.begin(), media.end());
    tables_ = choose_tables(options, format, inks);
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
  page_files files(to, stages.planes(), {width, height, dpi}, options.format, order, options.pictures, tables.look,
                   source.header().get());
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
