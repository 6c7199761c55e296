#include "tools/print/manifest.h"

#include <vrk.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>

namespace vrk::tool {
namespace {

using json = nlohmann::ordered_json;

constexpr const char* manifest_name = "manifest.json";
constexpr std::string_view picture_names[] = {"preview.png", "detail.png"};
constexpr std::string_view page_prefix = "page-";

json describe(const plane_format& plane, const plane_place& place) {
  const auto& [width, height, dpi] = place.size;
  json told{{"file", place.file},   {"ink", ink_name(plane.name)},
            {"bits", place.bits},   {"levels", plane.levels()},
            {"width", width},       {"height", height},
            {"dpi", {dpi.x, dpi.y}}};
  if (place.sample) told["sample"] = *place.sample;
  return told;
}

bool may_be_of_a_print(const std::string& name) {
  const auto is_plane = [&](std::string_view plane) {
    return name == std::string(plane) + ".pbm" || name == std::string(plane) + ".pgm";
  };
  return name == tiff_planes_name || name == cups_planes_name || name == pwg_planes_name ||
         std::any_of(plane_names.begin(), plane_names.end(), is_plane) ||
         std::find(std::begin(picture_names), std::end(picture_names), name) != std::end(picture_names);
}

bool may_be_of_pages(const std::string& directory) {
  return directory.starts_with(page_prefix) && directory.size() >= page_directory(1).size() &&
         directory.find_first_not_of("0123456789", page_prefix.size()) == std::string::npos;
}

void write(const json& manifest, output_set& to) {
  // Names of files need not be UTF-8, JSON must be.
  to.add(manifest_name).write(manifest.dump(2, ' ', false, json::error_handler_t::replace) + "\n");
}

}  // namespace

std::string page_directory(unsigned page) {
  const std::string number = std::to_string(page);
  return std::string(page_prefix) + std::string(3 - std::min<std::size_t>(3, number.size()), '0') + number;
}

void add_manifest(const image_reader& source, const page_files& files, const print_tables& tables, output_set& to) {
  json planes = json::array();
  for (std::size_t p = 0; p < files.planes(); ++p) {
    planes.push_back(describe(files.format(p), files.place(p)));
  }
  json used = json::object();
  for (const auto& [role, of] : named_tables(tables)) used[role] = of->name;
  const json manifest{{"program", std::string("vrk ") + vrk_get_version()},
                      {"picture", source.name()},
                      {"picture_profile", {{"name", source.colors().profile}, {"origin", source.colors().origin}}},
                      {"planes", planes},
                      {"pictures", files.drawn() ? json(picture_names) : json::array()},
                      {"tables", used}};
  write(manifest, to);
}

void add_manifest(const std::string& source, const std::vector<printed_page>& pages, output_set& to) {
  json list = json::array();
  for (const printed_page& page : pages) list.push_back({{"directory", page.directory}, {"planes", page.files}});
  write({{"program", std::string("vrk ") + vrk_get_version()}, {"picture", source}, {"pages", list}}, to);
}

std::vector<std::string> files_of_manifest(const std::filesystem::path& directory) {
  constexpr std::size_t longest = 1 << 20;
  std::string text(longest, '\0');
  std::ifstream file(directory / manifest_name, std::ios::binary);
  file.read(text.data(), std::streamsize(longest));
  text.resize(std::size_t(file.gcount()));

  std::vector<std::string> names;
  const auto add = [&](const json& name) {
    if (name.is_string() && may_be_of_a_print(name.get<std::string>())) names.push_back(name.get<std::string>());
  };
  const json manifest = json::parse(text, nullptr, false);
  if (!manifest.is_object()) return names;
  for (const json& plane : manifest.value("planes", json::array())) {
    if (plane.is_object()) add(plane.value("file", json()));
  }
  for (const json& picture : manifest.value("pictures", json::array())) add(picture);
  for (const json& page : manifest.value("pages", json::array())) {
    const json of = page.is_object() ? page.value("directory", json()) : json();
    if (!of.is_string() || !may_be_of_pages(of.get<std::string>())) continue;
    for (const std::string& name : files_of_manifest(directory / of.get<std::string>())) {
      names.push_back(of.get<std::string>() + "/" + name);
    }
    names.push_back(of.get<std::string>() + "/" + manifest_name);
  }
  return names;
}

}  // namespace vrk::tool
