#include "tools/printer_app/last_print.h"

#include <ctime>
#include <fstream>

#include "tools/files/output_set.h"
#include "tools/inspect/text.h"
#include "tools/pipeline/halftone.h"

namespace vrk::tool {
namespace {

constexpr const char* facts_name = "facts.json";

void copy(const std::filesystem::path& from, output_file& to) {
  std::ifstream file(from, std::ios::binary);
  std::vector<char> part(1 << 16);
  while (file.read(part.data(), std::streamsize(part.size())), file.gcount() != 0) {
    to.write(part.data(), std::size_t(file.gcount()));
  }
}

std::string now() {
  const std::time_t seconds = std::time(nullptr);
  std::tm parts{};
  char text[64];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", localtime_r(&seconds, &parts))};
}

}  // namespace

void keep_last_print(const std::filesystem::path& directory, const printed_job& job, unsigned page,
                     const print_report& report, const print_tables& tables) {
  tree planes = tree::array(), held = tree::array();
  for (const print_report::plane& plane : report.planes) {
    planes.push_back({{"ink", ink_name(plane.name)}, {"coverage", plane.coverage}});
  }
  for (const auto& [role, image] : named_tables(tables)) {
    held.push_back({{"role", role}, {"name", image->name}, {"holds", text_of(describe(*image))}});
  }
  const tree facts{{"job", job.number},          {"name", job.name},      {"page", page},
                   {"printed", now()},           {"width", report.width}, {"height", report.height},
                   {"dpi", text_of(report.dpi)}, {"planes", planes},      {"tables", held}};
  output_set files(directory);
  for (const std::filesystem::path& file : report.files) {
    if (file.extension() == ".png") copy(file, files.add(file.filename()));
  }
  // Names of jobs need not be UTF-8, JSON must be.
  files.add(facts_name).write(facts.dump(2, ' ', false, tree::error_handler_t::replace));
  files.keep();
}

tree facts_of_last_print(const std::filesystem::path& directory) {
  std::ifstream file(directory / facts_name, std::ios::binary);
  return file ? tree::parse(file, nullptr, false) : tree();
}

}  // namespace vrk::tool
