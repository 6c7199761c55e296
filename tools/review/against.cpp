#include "tools/review/against.h"

#include <algorithm>
#include <filesystem>

#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

std::string joined(const std::vector<std::string>& names) {
  std::string all;
  for (const std::string& name : names) all += (all.empty() ? "" : ", ") + name;
  return all;
}

std::string names_of_planes(unsigned inks) {
  return joined({plane_names.begin(), plane_names.begin() + std::ptrdiff_t(inks)});
}

// A bit is a dot of full ink. Only the measured part is kept.
ink_plane read_dots(const std::string& path, const photograph& of) {
  const auto source = open_image(path);
  const auto size = [](unsigned width, unsigned height) {
    return std::to_string(width) + " x " + std::to_string(height);
  };
  if (source->width() != of.inks.width || source->height() != of.inks.height) {
    throw user_error(path + ": " + size(source->width(), source->height()) + " dots, expected a dot for each of the " +
                     size(of.inks.width, of.inks.height) + " pixels of " + of.name);
  }
  if (source->channels() != 1 || source->bits() != 8) throw user_error(path + ": expected a PBM, one bit for each dot");
  ink_plane plane{of.part.width, of.part.height, {}};
  std::vector<std::uint8_t> line(source->line_bytes());
  for (unsigned y = 0; y < source->height(); ++y) {
    source->read_line(line.data());
    const auto strange = std::find_if(line.begin(), line.end(), [](std::uint8_t gray) { return gray % 255 != 0; });
    if (strange != line.end()) throw user_error(path + ": has grays, expected a PBM, one bit for each dot");
    if (y < of.part.top || y >= of.part.top + of.part.height) continue;
    for (unsigned x = 0; x < of.part.width; ++x) plane.ink.push_back(line[of.part.left + x] == 0 ? 1.0f : 0.0f);
  }
  return plane;
}

// What one program made: a plane for every ink of every photograph, empty where it is not there.
struct program {
  std::string name;
  std::vector<std::vector<ink_plane>> photographs;
};

}  // namespace

plane_path read_plane_path(const std::string& path, const std::vector<std::string>& photographs, unsigned inks) {
  const std::filesystem::path whole(path);
  const std::string stem = whole.stem().string();
  const std::size_t mark = stem.find_last_of("-_.");
  const std::string plane = mark == std::string::npos ? stem : stem.substr(mark + 1),
                    before = mark == std::string::npos ? "" : stem.substr(0, mark);
  const auto found = std::find(plane_names.begin(), plane_names.begin() + inks, plane);
  if (found == plane_names.begin() + inks) {
    throw user_error(path + ": the name does not say which plane it is, expected one of " + names_of_planes(inks) +
                     " before the ending, alone or after \"-\"");
  }
  const auto index = [&](const std::string& name) {
    return std::size_t(std::find(photographs.begin(), photographs.end(), name) - photographs.begin());
  };
  plane_path says{"other", index(before), std::size_t(found - plane_names.begin())};
  for (const auto& part : whole.parent_path()) {
    const std::string name = part.string();
    if (const std::size_t i = index(name); i < photographs.size()) {
      says.photograph = std::min(says.photograph, i);
    } else if (name.find_first_not_of("./") != std::string::npos) {
      says.program = name;
    }
  }
  if (says.photograph == photographs.size() && photographs.size() == 1) says.photograph = 0;
  if (says.photograph == photographs.size()) {
    throw user_error(path + ": the name does not say which photograph it is of, expected " + joined(photographs) +
                     " before the plane or as a directory");
  }
  return says;
}

std::vector<photograph_row> measure_others(const std::vector<photograph>& photographs, const report_options& options) {
  std::vector<std::string> names;
  for (const photograph& p : photographs) names.push_back(p.name);
  std::vector<program> programs;
  for (const std::string& path : options.against) {
    const plane_path says = read_plane_path(path, names, photographs[0].inks.inks);
    auto by = std::find_if(programs.begin(), programs.end(), [&](const program& p) { return p.name == says.program; });
    if (by == programs.end()) {
      programs.push_back(
          {says.program, std::vector(names.size(), std::vector<ink_plane>(photographs[0].asked.size()))});
      by = programs.end() - 1;
    }
    ink_plane& plane = by->photographs[says.photograph][says.plane];
    if (!plane.ink.empty()) {
      throw user_error(path + ": a second plane " + std::string(plane_names[says.plane]) + " of " +
                       names[says.photograph] + " by " + says.program);
    }
    plane = read_dots(path, photographs[says.photograph]);
  }

  std::vector<photograph_row> rows;
  for (const program& by : programs) {
    photograph_row row{by.name, "other program", {}};
    for (std::size_t i = 0; i < photographs.size(); ++i) {
      const auto& planes = by.photographs[i];
      const bool any = std::any_of(planes.begin(), planes.end(), [](const ink_plane& p) { return !p.ink.empty(); });
      row.figures.push_back(any ? std::optional(measure_photograph(photographs[i], planes, options.view))
                                : std::nullopt);
    }
    rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace vrk::tool
