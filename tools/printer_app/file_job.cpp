#include "tools/printer_app/file_job.h"

#include <functional>
#include <memory>
#include <string_view>

#include "tools/color/open_picture.h"
#include "tools/image/picture_input.h"
#include "tools/page/page.h"
#include "tools/printer_app/guarded.h"
#include "tools/printer_app/page_limits.h"
#include "tools/printer_app/print_job.h"
#include "tools/raster/raster_stream.h"
#include "tools/sandbox/open_pages.h"
#include "tools/sandbox/sandbox.h"

namespace vrk::tool {
namespace {

constexpr const char* formats[] = {"image/jpeg", "image/png", "image/tiff", "image/webp", "image/x-portable-anymap"};

using print_settings =
    std::unique_ptr<pappl_pr_options_t,
                    decltype([](pappl_pr_options_t* options) { papplJobDeletePrintOptions(options); })>;

// What the job asks for; without it, a picture is turned as the paper is.
std::optional<unsigned> turns_of(pappl_job_t* job) {
  ipp_attribute_t* const orientation = papplJobGetAttribute(job, "orientation-requested");
  switch (orientation == nullptr ? int(IPP_ORIENT_NONE) : ippGetInteger(orientation, 0)) {
    case IPP_ORIENT_PORTRAIT:
      return 0;
    case IPP_ORIENT_REVERSE_LANDSCAPE:
      return 1;
    case IPP_ORIENT_REVERSE_PORTRAIT:
      return 2;
    case IPP_ORIENT_LANDSCAPE:
      return 3;
    default:
      return {};
  }
}

// The page that the job and its printer ask for.
page_options page_of(pappl_job_t* job) {
  const print_settings options(papplJobCreatePrintOptions(job, 1, true));
  page_options page;
  page.dpi = {double(options->printer_resolution[0]), double(options->printer_resolution[1])};
  if (papplJobGetAttribute(job, "printer-resolution") == nullptr &&
      papplJobGetAttribute(job, "print-quality") == nullptr) {
    pappl_pr_driver_data_t record;
    papplPrinterGetDriverData(papplJobGetPrinter(job), &record);
    page.dpi = {double(record.x_default), double(record.y_default)};
  }
  if (options->print_scaling != PAPPL_SCALING_NONE) {
    page.paper = {options->media.size_width / 100.0, options->media.size_length / 100.0};
  }
  page.fill = options->print_scaling == PAPPL_SCALING_FILL;
  page.quarter_turns = turns_of(job);
  return page;
}

void print_stream(pappl_job_t* job, pappl_device_t* device, picture_input input) {
  const job_options options = read_options(job, job_kind::pages);
  const page_supply stream = open_pages(std::move(input), job_limits, has_sandbox());
  print_job(job, device, options.print, [&]() -> std::unique_ptr<image_reader> {
    auto page = stream();
    if (page == nullptr) return page;
    papplJobSetImpressionsCompleted(job, 1);
    return give_colors(std::move(page), options.picture, !options.print.inks.profile.to.empty());
  });
}

void print_picture(pappl_job_t* job, pappl_device_t* device, picture_input input) {
  const job_options options = read_options(job, job_kind::picture);
  auto picture = open_pages(std::move(input), job_limits, has_sandbox())();
  auto page =
      lay_out(give_colors(std::move(picture), options.picture, !options.print.inks.profile.to.empty()), page_of(job));
  print_job(job, device, options.print, [&] { return std::move(page); });
  papplJobSetImpressions(job, 1);
  papplJobSetImpressionsCompleted(job, 1);
}

bool print_file(pappl_job_t* job, pappl_device_t* device) {
  return guarded(job, [&] {
    picture_input input = open_input(papplJobGetFilename(job));
    input.name = papplJobGetName(job);
    begins_raster_stream(input.first, input.second) ? print_stream(job, device, std::move(input))
                                                    : print_picture(job, device, std::move(input));
  });
}

// A file whose sender does not know what it is.
const char* format_of(const unsigned char* bytes, std::size_t size, void*) {
  const std::string_view begin(reinterpret_cast<const char*>(bytes), size);
  if (begin.starts_with("II*") || begin.starts_with(std::string_view("MM\0*", 4))) return "image/tiff";
  if (begin.starts_with("RIFF") && begin.substr(0, 12).ends_with("WEBP")) return "image/webp";
  if (size > 1 && bytes[0] == 'P' && bytes[1] >= '1' && bytes[1] <= '7') return "image/x-portable-anymap";
  if (size > 1 && begins_raster_stream(bytes[0], bytes[1])) return device_format;
  return nullptr;
}

}  // namespace

void add_file_filters(pappl_system_t* system) {
  const auto filter = [](pappl_job_t* job, pappl_device_t* device, void*) { return print_file(job, device); };
  for (const char* const format : formats) papplSystemAddMIMEFilter(system, format, device_format, filter, nullptr);
  papplSystemSetMIMECallback(system, format_of, nullptr);
}

void set_file_callback(pappl_pr_driver_data_t& record) {
  record.format = device_format;
  record.printfile_cb = [](pappl_job_t* job, pappl_pr_options_t*, pappl_device_t* device) {
    return print_file(job, device);
  };
}

}  // namespace vrk::tool
