#include "tools/print/print_report.h"

#include <vrk.h>

#include <nlohmann/json.hpp>

#include "tools/command_line/printable.h"

namespace vrk::tool {
namespace {

const char* color_name(unsigned channels) { return channels == 1 ? "gray" : channels == 3 ? "RGB" : "CMYK"; }

double width_mm(const print_report& report) { return report.width / report.dpi.x * mm_per_inch; }
double height_mm(const print_report& report) { return report.height / report.dpi.y * mm_per_inch; }

// The first file with its directory, and the others without where they lie beside it.
std::string list_of_files(const print_report& report) {
  std::string list;
  for (const std::filesystem::path& file : report.files) {
    const bool beside = !list.empty() && file.parent_path() == report.files[0].parent_path();
    list += (list.empty() ? "" : ", ") + (beside ? file.filename() : file).string();
  }
  return printable(list);
}

void show_lines(const print_report& report, std::FILE* to) {
  std::fprintf(to, "%s: %u x %u pixels, %.1f x %.1f mm on paper at %s dpi\n", printable(report.source).c_str(),
               report.width, report.height, width_mm(report), height_mm(report), text_of(report.dpi).c_str());
  std::fprintf(to, "Ink coverage:");
  for (const print_report::plane& plane : report.planes) {
    std::fprintf(to, "%s %s %.2f %%", &plane == &report.planes[0] ? "" : ",", plane.name.c_str(), plane.coverage * 100);
  }
  std::fprintf(to, "\nPrinted in %.1f s: %s\n", report.seconds, list_of_files(report).c_str());
}

void show_steps(const print_report& report, std::FILE* to) {
  const double pixels = double(report.width) * report.height / 1e6;
  std::fprintf(to, "\n  step               seconds   Mpixel/s   %u-bit %s, by vrk %s\n", report.bits,
               color_name(report.channels), vrk_get_version());
  for (const stage_time& t : report.times) {
    std::string flags;
    for (const std::string& flag : t.flags) flags += (flags.empty() ? "   " : ", ") + flag;
    std::fprintf(to, "  %-16s %9.3f %10.1f%s\n", t.name.c_str(), t.seconds, pixels / t.seconds, flags.c_str());
  }
  std::fprintf(to, "  %-16s %9.3f %10.1f   on %u thread%s\n", "all", report.seconds, pixels / report.seconds,
               report.threads, report.threads == 1 ? "" : "s");
}

// Named as in the manifest, where that says the same.
void show_json(const print_report& report, std::FILE* to) {
  using json = nlohmann::ordered_json;
  json planes = json::array(), steps = json::array(), files = json::array();
  for (const print_report::plane& plane : report.planes) {
    planes.push_back({{"plane", plane.name}, {"file", plane.file}, {"coverage", plane.coverage}});
  }
  for (const stage_time& t : report.times) {
    steps.push_back({{"step", t.name}, {"flags", t.flags}, {"seconds", t.seconds}});
  }
  for (const std::filesystem::path& file : report.files) files.push_back(file.string());
  const json all{{"program", std::string("vrk ") + vrk_get_version()},
                 {"picture", report.source},
                 {"colors", color_name(report.channels)},
                 {"picture_profile", {{"name", report.colors.profile}, {"origin", report.colors.origin}}},
                 {"bits", report.bits},
                 {"width", report.width},
                 {"height", report.height},
                 {"dpi", {report.dpi.x, report.dpi.y}},
                 {"mm", {width_mm(report), height_mm(report)}},
                 {"planes", planes},
                 {"steps", steps},
                 {"seconds", report.seconds},
                 {"threads", report.threads},
                 {"files", files}};
  // Names of files need not be UTF-8, JSON must be; and a terminal shows no control character of it.
  std::fprintf(to, "%s\n", all.dump(2, ' ', true, json::error_handler_t::replace).c_str());
}

}  // namespace

void show(const print_report& report, summary form, std::FILE* to) {
  if (form == summary::quiet) return;
  if (form == summary::json) return show_json(report, to);
  show_lines(report, to);
  if (form == summary::verbose) show_steps(report, to);
}

}  // namespace vrk::tool
