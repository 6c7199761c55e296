#include "tools/print/print_report.h"

#include <vrk.h>

#include <cstdio>

#include "tools/printable.h"

namespace vrk::tool {
namespace {

const char* color_name(unsigned channels) { return channels == 1 ? "gray" : channels == 3 ? "RGB" : "CMYK"; }

const char* plural(std::size_t count) { return count == 1 ? "" : "s"; }

}  // namespace

void show(const print_report& report, const std::filesystem::path& directory) {
  const double pixels = double(report.width) * report.height / 1e6;
  std::printf("%s: page of %u x %u pixels, %u-bit %s, %zu ink%s, by vrk %s\n", printable(report.source).c_str(),
              report.width, report.height, report.bits, color_name(report.channels), report.planes.size(),
              plural(report.planes.size()), vrk_get_version());
  std::printf("%.1f x %.1f mm on paper, at %s dpi\n", report.width / report.dpi.x * mm_per_inch,
              report.height / report.dpi.y * mm_per_inch, text_of(report.dpi).c_str());
  std::printf("\n  plane     coverage\n");
  for (const print_report::plane& plane : report.planes) {
    std::printf("  %-8s  %6.2f %%\n", plane.file.c_str(), plane.coverage * 100);
  }
  std::printf("\n  step             flags   seconds   Mpixel/s\n");
  for (const stage_time& t : report.times) {
    char flags[16] = "";
    if (t.flags) std::snprintf(flags, sizeof flags, "0x%03x", *t.flags);
    std::printf("  %-16s %5s %9.3f %10.1f\n", t.name.c_str(), flags, t.seconds, pixels / t.seconds);
  }
  std::printf("  %-22s %9.3f %10.1f   on %u thread%s\n", "all", report.seconds, pixels / report.seconds, report.threads,
              plural(report.threads));
  if (!report.drawn) return;
  std::printf("\nThe page: %s\nIts dots: %s\n", printable((directory / "preview.png").string()).c_str(),
              printable((directory / "detail.png").string()).c_str());
}

}  // namespace vrk::tool
