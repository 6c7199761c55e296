#include "tools/rastertovrk/filter_job.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "tools/color/open_picture.h"
#include "tools/command_line/printable.h"
#include "tools/image/picture_input.h"
#include "tools/page/page.h"
#include "tools/pipeline/user_error.h"
#include "tools/print/print_pages.h"
#include "tools/queue/ppd_options.h"
#include "tools/raster/page_header.h"
#include "tools/raster/raster_stream.h"
#include "tools/rastertovrk/next_filter.h"
#include "tools/sandbox/open_pages.h"
#include "tools/sandbox/sandbox.h"

namespace vrk::tool {
namespace {

enum argument { job_copies = 4, job_settings = 5, job_file = 6 };

constexpr const char* missing_filter = "cups-missing-filter-warning";  // what a queue without its programs is called

template <class... Values>
void tell(const char* form, const Values&... values) {
  std::fprintf(stderr, form, values...);
  std::fputc('\n', stderr);
}

// Of standard input, the filter before this one has made the copies, or the printer makes them.
unsigned copies_of(const std::vector<std::string>& arguments) {
  const std::string& text = arguments[job_copies];
  unsigned copies = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), copies);
  if (error != std::errc() || end != text.data() + text.size() || copies == 0) {
    throw user_error("the copies are \"" + text + "\", expected a number from 1");
  }
  return arguments.size() > job_file ? copies : 1;
}

job_options job_options_of(const queue_options& queue) {
  job_options job = read_job_options(queue.job, job_kind::pages, queue.queue);
  if (job.print.format == print_format::planes) job.print.format = print_format::cups;
  if (!is_raster_stream(job.print.format)) throw usage_error("a print queue takes raster: expected format cups or pwg");
  if (job.print.order && job.print.format != print_format::cups) throw usage_error("--order belongs to --format cups");
  job.print.silent = true;
  return job;
}

std::unique_ptr<next_filter> start_next(const std::string& program, std::vector<std::string> arguments) {
  if (program.empty()) {
    tell("STATE: -%s", missing_filter);
    return nullptr;
  }
  arguments.resize(job_file);
  try {
    auto next = std::make_unique<next_filter>(program, std::move(arguments));
    tell("STATE: -%s", missing_filter);
    return next;
  } catch (const user_error&) {
    tell("STATE: +%s", missing_filter);
    throw;
  }
}

// Whole pages are printed. When it was the other filter that took no more, its failure is the reason for ours.
void finish_after_error(next_filter& next) {
  try {
    next.finish();
  } catch (const user_error& error) {
    if (std::ferror(stdout) != 0) throw;
    tell("ERROR: %s", printable(error.what()).c_str());
  }
}

// All pages of all copies, as one stream.
class job_pages {
 public:
  job_pages(const std::string& path, unsigned copies, const job_options& job)
      : path_(path), copies_left_(copies), job_(job) {}

  std::unique_ptr<image_reader> next() {
    for (;;) {
      if (!stream_) {
        if (copies_left_ == 0) return nullptr;
        --copies_left_;
        open();
      }
      if (auto page = stream_()) return prepared(std::move(page));
      stream_ = nullptr;
    }
  }

  unsigned number() const { return number_; }  // of the page, from 1
  unsigned copies() const { return copies_; }  // of it, which the printer makes

 private:
  void open() {
    picture_input input = open_input(path_);
    if (!begins_raster_stream(input.first, input.second)) {
      throw user_error(input.name + ": is no raster stream, expected CUPS, PWG or Apple raster");
    }
    stream_ = open_pages(std::move(input), job_.picture.limits, has_sandbox());
  }

  std::unique_ptr<image_reader> prepared(std::unique_ptr<image_reader> page) {
    copies_ = std::max(page->header()->cups.NumCopies, 1U);
    tell("INFO: Printing page %u", ++number_);
    page_options as_it_is;
    as_it_is.dpi = page->dpi();
    return lay_out(give_colors(std::move(page), job_.picture, !job_.print.inks.profile.to.empty()), as_it_is);
  }

  std::string path_;
  unsigned copies_left_;
  const job_options& job_;
  page_supply stream_{};  // of the copy that is printed
  unsigned number_ = 0, copies_ = 1;
};

void tell_page(const print_report& report) {
  std::string inks;
  for (const print_report::plane& plane : report.planes) {
    char text[64];
    std::snprintf(text, sizeof text, " %s %.2f %%", plane.name.c_str(), 100 * plane.coverage);
    inks += text;
  }
  tell("DEBUG: %s: %u x %u pixels at %g x %g dpi, in %.2f s, inks%s", printable(report.source).c_str(), report.width,
       report.height, report.dpi.x, report.dpi.y, report.seconds, inks.c_str());
}

}  // namespace

void print_filter_job(const std::vector<std::string>& arguments) {
  tell_without_sandbox("WARNING");
  const char* const ppd = std::getenv("PPD");
  const queue_options queue = read_queue_options(ppd == nullptr ? "" : ppd, arguments[job_settings]);
  const job_options job = job_options_of(queue);
  job_pages pages(arguments.size() > job_file ? arguments[job_file] : "-", copies_of(arguments), job);
  const std::unique_ptr<next_filter> next = start_next(queue.next_filter, arguments);
  const page_source source{"the job", [&] { return pages.next(); }, {}};
  try {
    print_pages_to_standard_output(source, job.print, [&](const print_report& report) {
      tell_page(report);
      if (next == nullptr) tell("PAGE: %u %u", pages.number(), pages.copies());  // else the other filter counts them
    });
  } catch (const user_error&) {
    if (next != nullptr) finish_after_error(*next);
    throw;
  }
  if (next != nullptr) next->finish();
}

}  // namespace vrk::tool
