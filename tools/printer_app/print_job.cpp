#include "tools/printer_app/print_job.h"

#include <algorithm>
#include <fstream>
#include <string_view>
#include <vector>

#include "tools/pipeline/user_error.h"
#include "tools/print/plane_files.h"
#include "tools/print/print_pages.h"
#include "tools/printer_app/application.h"
#include "tools/printer_app/devices.h"
#include "tools/printer_app/last_print.h"
#include "tools/printer_app/vendor_options.h"

namespace vrk::tool {
namespace {

namespace fs = std::filesystem;

// A page of a job that may be cancelled.
class cancellable final : public image_reader {
 public:
  cancellable(std::unique_ptr<image_reader> page, pappl_job_t* job)
      : image_reader(*page), page_(std::move(page)), job_(job) {}

  void read_line(void* line) override {
    if (papplJobIsCanceled(job_)) throw user_error(name_ + ": the job was cancelled");
    page_->read_line(line);
  }

 private:
  std::unique_ptr<image_reader> page_;
  pappl_job_t* job_;
};

// Gray alone, where the job or the printer says so: the black ink, whatever the printer has else.
bool is_monochrome(pappl_job_t* job) {
  if (ipp_attribute_t* const mode = papplJobGetAttribute(job, "print-color-mode"); mode != nullptr) {
    return std::string_view(ippGetString(mode, 0, nullptr)).ends_with("monochrome");
  }
  pappl_pr_driver_data_t record;
  papplPrinterGetDriverData(papplJobGetPrinter(job), &record);
  return record.color_default == PAPPL_COLOR_MODE_MONOCHROME;
}

int copies_of(pappl_job_t* job) {
  ipp_attribute_t* const copies = papplJobGetAttribute(job, "copies");
  return copies == nullptr ? 1 : ippGetInteger(copies, 0);
}

void send(pappl_device_t* device, const fs::path& path, unsigned first) {
  std::ifstream file(path, std::ios::binary);
  file.seekg(first);
  std::vector<char> part(1 << 16);
  while (file.read(part.data(), std::streamsize(part.size())), file.gcount() != 0) {
    if (papplDeviceWrite(device, part.data(), std::size_t(file.gcount())) != ssize_t(file.gcount())) {
      throw user_error("the device takes no more of the page");
    }
  }
}

// Each page becomes a file first: of one that fails, nothing is sent.
void print_to_device(pappl_device_t* device, int copies, const page_source& pages, page_printer& printer,
                     const std::function<void(const print_report&)>& tell) {
  unsigned first = 0;
  while (const std::unique_ptr<image_reader> page = pages.next()) {
    const temporary_directory directory(work_directory());
    output_set files(directory.path());
    const print_report report = printer.print(*page, files);
    for (int copy = 0; copy < copies; ++copy) {
      send(device, directory.path() / report.planes[0].file, first);
      first = raster_stream_start;
    }
    papplDeviceFlush(device);
    tell(report);
  }
}

}  // namespace

job_options read_options(pappl_job_t* job, job_kind kind) {
  std::vector<job_option> given = options_of(job);
  const bool named = std::ranges::find(given, "format", &job_option::name) != given.end();
  const bool directory = directory_of(papplJobGetPrinter(job)).has_value();
  if (!directory && !named) given.push_back({"format", "cups"});
  job_options read = read_job_options(given, kind);
  if (!directory && !is_raster_stream(read.print.format)) {
    throw usage_error("vrk-format: this printer takes a stream, expected cups or pwg");
  }
  read.print.silent = true;
  if (is_monochrome(job)) {
    read.print.inks.count = 1;
    read.print.inks.split = false;
    read.print.inks.profile.to.clear();
    read.print.files.csc2.clear();
  }
  return read;
}

void print_job(pappl_job_t* job, pappl_device_t* device, const print_options& options,
               const std::function<std::unique_ptr<image_reader>()>& next) {
  pappl_printer_t* const printer = papplJobGetPrinter(job);
  const page_source pages{papplJobGetName(job), [&]() -> std::unique_ptr<image_reader> {
                            auto page = next();
                            if (page == nullptr) return page;
                            return std::make_unique<cancellable>(std::move(page), job);
                          }};
  page_printer work(options);
  unsigned done = 0;
  const auto tell = [&](const print_report& report) {
    keep_last_print(last_print_directory(printer), {papplJobGetID(job), pages.name}, ++done, report, work.tables());
  };
  if (const auto directory = directory_of(printer)) {
    const job_directory own(*directory, printer, job);
    print_pages(pages, work, own.path(), tell);
  } else {
    print_to_device(device, copies_of(job), pages, work, tell);
  }
}

}  // namespace vrk::tool
