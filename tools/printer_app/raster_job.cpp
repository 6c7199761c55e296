#include "tools/printer_app/raster_job.h"

#include <memory>
#include <thread>

#include "tools/color/open_picture.h"
#include "tools/pipeline/user_error.h"
#include "tools/printer_app/guarded.h"
#include "tools/printer_app/page_feed.h"
#include "tools/printer_app/page_limits.h"
#include "tools/printer_app/print_job.h"
#include "tools/printer_app/request.h"
#include "tools/printer_app/turns.h"
#include "tools/raster/raster_page.h"

namespace vrk::tool {
namespace {

// A print on a thread of its own, which asks for the lines that PAPPL brings.
class raster_job {
 public:
  raster_job(pappl_job_t* job, pappl_device_t* device)
      : options_(read_options(job, job_kind::pages)),
        name_(papplJobGetName(job)),
        feed_(name_),
        printing_([this, job, device] {
          failure_ = complaint_of([&] { print(job, device); });
          feed_.stop();
        }) {}
  ~raster_job() {
    feed_.end();
    if (printing_.joinable()) printing_.join();
  }
  raster_job(const raster_job&) = delete;
  raster_job& operator=(const raster_job&) = delete;

  page_feed& feed() { return feed_; }

  void start_page(const cups_page_header2_t& header) {
    announced_ = announced_pages(header);
    if (feed_.start_page(header)) ++pages_;
  }

  // Behind the last page. Throws what the print threw.
  void finish() {
    feed_.end();
    printing_.join();
    if (!failure_.empty()) throw user_error(failure_);
    require_all_pages(name_, pages_, announced_);
  }

 private:
  void print(pappl_job_t* job, pappl_device_t* device) {
    print_job(job, device, options_.print, [&]() -> std::unique_ptr<image_reader> {
      auto page = feed_.next_page();
      if (page == nullptr) return page;
      return give_colors(std::move(page), options_.picture, !options_.print.inks.profile.to.empty());
    });
  }

  job_options options_;
  std::string name_;
  unsigned pages_ = 0, announced_ = 0;
  page_feed feed_;
  std::string failure_;
  std::thread printing_;
};

raster_job* of(pappl_job_t* job) { return static_cast<raster_job*>(papplJobGetData(job)); }

bool start_job(pappl_job_t* job, pappl_pr_options_t*, pappl_device_t* device) {
  return guarded(job, [&] { papplJobSetData(job, new raster_job(job, device)); });
}

bool start_page(pappl_job_t* job, pappl_pr_options_t* options, pappl_device_t*, unsigned page) {
  return guarded(job, [&] {
    const cups_page_header2_t& header = options->header;
    const std::string name = std::string(papplJobGetName(job)) + ", page " + std::to_string(page);
    refuse_replaced_header(header, name);
    refuse_huge_page(header, name);
    of(job)->start_page(header);
  });
}

bool write_line(pappl_job_t* job, pappl_pr_options_t*, pappl_device_t*, unsigned, const unsigned char* line) {
  return of(job)->feed().add_line(line);
}

bool end_page(pappl_job_t* job, pappl_pr_options_t*, pappl_device_t*, unsigned) { return of(job)->feed().end_page(); }

bool end_job(pappl_job_t* job, pappl_pr_options_t*, pappl_device_t*) {
  const std::unique_ptr<raster_job> ended(of(job));
  papplJobSetData(job, nullptr);
  const std::string why = complaint_of([&] { ended->finish(); });
  end_turn();
  if (why.empty()) return true;
  say_failed(job, why);
  answer_overread_request(why);
  return false;
}

}  // namespace

void set_raster_callbacks(pappl_pr_driver_data_t& record) {
  record.rstartjob_cb = start_job;
  record.rstartpage_cb = start_page;
  record.rwriteline_cb = write_line;
  record.rendpage_cb = end_page;
  record.rendjob_cb = end_job;
}

}  // namespace vrk::tool
