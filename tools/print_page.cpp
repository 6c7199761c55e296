#include "tools/print_page.h"

#include <cinttypes>
#include <cstdio>

#include "tools/image_writer.h"
#include "tools/progress.h"

namespace vrk::tool {
namespace {

// The file of one plane: packed bits as they are, or a gray picture in which white is no ink.
class plane_file {
 public:
  plane_file(const plane_line& plane, const std::filesystem::path& directory, unsigned width, unsigned height)
      : name_(std::string(plane.name) + (plane.bits == 1 ? ".pbm" : ".pgm")),
        darkest_(plane.bits == 1 ? 0 : plane.levels - 1),
        grays_(width),
        file_(plane.bits == 1 ? write_pbm(directory / name_, width, height)
                              : write_pgm(directory / name_, width, height, darkest_)) {}

  const std::string& name() const { return name_; }

  void add_line(const plane_line& plane, const std::vector<std::uint8_t>& codes) {
    if (plane.bits == 1) {
      file_->write_line(plane.packed.data());
      return;
    }
    for (std::size_t x = 0; x < codes.size(); ++x) grays_[x] = std::uint8_t(darkest_ - codes[x]);
    file_->write_line(grays_.data());
  }
  void keep() { file_->keep(); }

 private:
  std::string name_;
  unsigned darkest_;
  std::vector<std::uint8_t> grays_;
  std::unique_ptr<image_writer> file_;
};

}  // namespace

print_report print_page(image_reader& source, const print_options& options, const std::filesystem::path& directory,
                        std::optional<detail::place> detail_centre) {
  const unsigned width = source.width(), height = source.height();
  pipeline road = make_pipeline(options, choose_tables(options), width, {source.channels(), source.bits()});

  make_directory(directory);
  std::vector<plane_file> files;
  for (const plane_line& plane : road.planes()) files.emplace_back(plane, directory, width, height);
  preview small(directory / "preview.png", width, height);
  detail large(directory / "detail.png", width, height, detail_centre.value_or(detail::place{width / 2, height / 2}));

  dots placed(road.planes(), width);
  std::vector<std::uint8_t> line(source.line_bytes());
  stopwatch reading, writing, viewing;
  progress bar(height);
  for (unsigned y = 0; y < height; ++y, bar.step()) {
    reading.time([&] { source.read_line(line.data()); });
    road.run(line.data());
    viewing.time([&] {
      placed.read_line(road.planes());
      small.add_line(placed.colors());
      large.add_line(placed.colors());
    });
    writing.time([&] {
      for (std::size_t p = 0; p < files.size(); ++p) files[p].add_line(road.planes()[p], placed.codes(p));
    });
  }

  print_report report{source.name(), width, height, source.channels(), source.bits(), {}, {}};
  for (std::size_t p = 0; p < files.size(); ++p) report.planes.push_back({files[p].name(), placed.coverage(p)});
  report.times.push_back({"read", reading.seconds()});
  for (stage_time& t : road.times()) report.times.push_back(std::move(t));
  report.times.push_back({"write planes", writing.seconds()});
  report.times.push_back({"draw pictures", viewing.seconds()});
  for (plane_file& file : files) file.keep();
  small.keep();
  large.keep();
  return report;
}

void show(const print_report& report, const std::filesystem::path& directory) {
  const double pixels = double(report.width) * report.height / 1e6;
  std::printf("%s: %u x %u pixels, %u-bit %s, %zu ink%s\n", report.source.c_str(), report.width, report.height,
              report.bits, report.channels == 1 ? "gray" : "RGB", report.planes.size(),
              report.planes.size() == 1 ? "" : "s");
  std::printf("\n  plane     coverage\n");
  for (const print_report::plane& plane : report.planes) {
    std::printf("  %-8s  %6.2f %%\n", plane.file.c_str(), plane.coverage * 100);
  }
  std::printf("\n  step              seconds   Mpixel/s\n");
  double total = 0;
  for (const stage_time& t : report.times) {
    std::printf("  %-16s %8.3f %10.1f\n", t.name.c_str(), t.seconds, pixels / t.seconds);
    total += t.seconds;
  }
  std::printf("  %-16s %8.3f %10.1f\n", "all", total, pixels / total);
  std::printf("\nThe page: %s\nIts dots: %s\n", (directory / "preview.png").c_str(),
              (directory / "detail.png").c_str());
}

}  // namespace vrk::tool
