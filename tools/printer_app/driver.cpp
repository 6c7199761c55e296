#include "tools/printer_app/driver.h"

#include <algorithm>
#include <cstring>

#include "tools/printer_app/file_job.h"
#include "tools/printer_app/guarded.h"
#include "tools/printer_app/raster_job.h"
#include "tools/printer_app/test_page.h"
#include "tools/printer_app/vendor_options.h"

namespace vrk::tool {
namespace {

pappl_pr_driver_t all[] = {{"vrk", "vrk Raster", nullptr, nullptr}};

// The largest one is that of page_limits.h.
constexpr const char* papers[] = {"iso_a4_210x297mm",  "iso_a6_105x148mm",         "iso_a5_148x210mm",
                                  "iso_a3_297x420mm",  "om_small-photo_100x150mm", "na_index-4x6_4x6in",
                                  "na_5x7_5x7in",      "na_letter_8.5x11in",       "na_legal_8.5x14in",
                                  "na_ledger_11x17in", "custom_max_432x1200mm",    "custom_min_50x50mm"};
constexpr const char* paper_kinds[] = {"stationery", "photographic", "photographic-glossy", "photographic-matte"};
constexpr int resolutions[] = {150, 300, 600, 1200};  // those of draft, normal (the third one) and high quality

template <class Values, std::size_t size>
int set_all(const Values& values, const char* (&to)[size]) {
  std::ranges::copy(values, to);
  return int(std::size(values));
}

void set_paper(pappl_pr_driver_data_t& record) {
  record.num_media = set_all(papers, record.media);
  record.num_type = set_all(paper_kinds, record.type);
  record.source[record.num_source++] = "main";
  pappl_media_col_t& ready = record.media_ready[0];
  const pwg_media_t* const a4 = pwgMediaForPWG(papers[0]);
  ready.size_width = a4->width;
  ready.size_length = a4->length;
  std::strncpy(ready.size_name, papers[0], sizeof ready.size_name - 1);
  std::strncpy(ready.source, record.source[0], sizeof ready.source - 1);
  std::strncpy(ready.type, paper_kinds[0], sizeof ready.type - 1);
  record.media_default = ready;
  // Drivers that CUPS makes from this call a paper by its name only where it also has margins, and without a paper of
  // that name they print on another one. So there are margins, too small to be seen.
  record.left_right = record.bottom_top = 1;  // 0.01 mm
  record.borderless = true;
}

void set_pixels(pappl_pr_driver_data_t& record) {
  record.raster_types =
      PAPPL_PWG_RASTER_TYPE_SGRAY_8 | PAPPL_PWG_RASTER_TYPE_SRGB_8 | PAPPL_PWG_RASTER_TYPE_ADOBE_RGB_8;
  for (const int dpi : resolutions) {
    record.x_resolution[record.num_resolution] = record.y_resolution[record.num_resolution] = dpi;
    ++record.num_resolution;
  }
  record.x_default = record.y_default = 600;
  record.color_supported = PAPPL_COLOR_MODE_AUTO | PAPPL_COLOR_MODE_COLOR | PAPPL_COLOR_MODE_MONOCHROME;
  record.color_default = PAPPL_COLOR_MODE_AUTO;
  record.content_default = PAPPL_CONTENT_AUTO;
  record.quality_default = IPP_QUALITY_NORMAL;
  record.scaling_default = PAPPL_SCALING_FIT;
}

// PAPPL reads everything here without asking whether it was set.
void set_rest(pappl_pr_driver_data_t& record) {
  std::strncpy(record.make_and_model, all[0].description, sizeof record.make_and_model - 1);
  record.ppm = record.ppm_color = 10;
  record.kind = PAPPL_KIND_DOCUMENT | PAPPL_KIND_PHOTO;
  record.orient_default = IPP_ORIENT_PORTRAIT;
  record.sides_supported = record.sides_default = PAPPL_SIDES_ONE_SIDED;
  record.duplex = PAPPL_DUPLEX_NONE;
  record.finishings = PAPPL_FINISHINGS_NONE;
  record.bin[record.num_bin++] = "face-up";
  record.output_face_up = true;
  record.identify_supported = record.identify_default = PAPPL_IDENTIFY_ACTIONS_DISPLAY;
  record.identify_cb = [](pappl_printer_t* printer, pappl_identify_actions_t, const char* message) {
    papplLogPrinter(printer, PAPPL_LOGLEVEL_INFO, "Identify-Printer: %s", message != nullptr ? message : "");
  };
  record.status_cb = [](pappl_printer_t*) { return true; };
  record.testpage_cb = make_test_page;
}

}  // namespace

std::span<pappl_pr_driver_t> drivers() { return all; }

bool describe_printer(pappl_system_t* system, const char* driver, const char*, const char*,
                      pappl_pr_driver_data_t* record, ipp_t** attributes, void*) {
  if (std::strcmp(driver, all[0].name) != 0) {
    papplLog(system, PAPPL_LOGLEVEL_ERROR, "There is no driver '%s', expected '%s'.", driver, all[0].name);
    return false;
  }
  const std::string why = complaint_of([&] {
    set_raster_callbacks(*record);
    set_file_callback(*record);
    set_paper(*record);
    set_pixels(*record);
    set_rest(*record);
    *attributes = ippNew();
    add_vendor_options(*record, **attributes);
  });
  if (!why.empty()) papplLog(system, PAPPL_LOGLEVEL_ERROR, "%s", why.c_str());
  return why.empty();
}

}  // namespace vrk::tool
