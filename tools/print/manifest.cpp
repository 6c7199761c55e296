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

json describe(const plane_format& plane, const plane_place& place) {
  const auto& [width, height, dpi] = place.size;
  json told{{"file", place.file},   {"ink", ink_name(plane.name)},
            {"bits", place.bits},   {"levels", plane.levels()},
            {"width", width},       {"height", height},
            {"dpi", {dpi.x, dpi.y}}};
  if (place.sample) told["sample"] = *place.sample;
  return told;
}

// By the options of `vrk print` that give such tables.
json describe(const print_tables& tables) {
  json used = json::object();
  const auto add = [&](const std::string& role, const std::optional<table>& of) {
    if (of) used[role] = of->name;
  };
  add("curve", tables.tone.curve);
  add("rgb curves", tables.tone.rgb_curves);
  add("csc1", tables.rgb);
  add("gray", tables.gray);
  add("csc2", tables.ink);
  add("post", tables.post.main);
  for (std::size_t p = 0; p < plane_names.size(); ++p) {
    add("post " + std::string(plane_names[p]), tables.post.planes[p]);
  }
  add("dith", tables.dither);
  add("edpr", tables.parameters);
  add("edtb", tables.distribution);
  return used;
}

bool may_be_of_a_print(const std::string& name) {
  const auto is_plane = [&](std::string_view plane) {
    return name == std::string(plane) + ".pbm" || name == std::string(plane) + ".pgm";
  };
  return name == tiff_planes_name || std::any_of(plane_names.begin(), plane_names.end(), is_plane) ||
         std::find(std::begin(picture_names), std::end(picture_names), name) != std::end(picture_names);
}

}  // namespace

void add_manifest(const image_reader& source, const page_files& files, const print_tables& tables, output_set& to) {
  json planes = json::array();
  for (std::size_t p = 0; p < files.planes(); ++p) {
    planes.push_back(describe(files.format(p), files.place(p)));
  }
  const json manifest{{"program", std::string("vrk ") + vrk_get_version()},
                      {"picture", source.name()},
                      {"picture_profile", {{"name", source.colors().profile}, {"origin", source.colors().origin}}},
                      {"planes", planes},
                      {"pictures", files.drawn() ? json(picture_names) : json::array()},
                      {"tables", describe(tables)}};
  // Names of files need not be UTF-8, JSON must be.
  to.add(manifest_name).write(manifest.dump(2, ' ', false, json::error_handler_t::replace) + "\n");
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
  return names;
}

}  // namespace vrk::tool
