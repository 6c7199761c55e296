#include "tools/page/page_arguments.h"

#include <map>
#include <string>

namespace vrk::tool {
namespace {

// A value that `parse` understands, or one sentence.
template <class Value, class Parse>
auto take(std::optional<Value>& to, Parse parse, std::string option, std::string expected) {
  return [&to, parse, option = std::move(option), expected = std::move(expected)](const std::string& text) {
    to = parse(text);
    if (!to) throw CLI::ValidationError(option + " " + text + ": expected " + expected);
  };
}

}  // namespace

void add_paper_options(CLI::App& command, page_options& to, const std::string& usual_size) {
  const std::string range = std::to_string(lowest_dpi) + " to " + std::to_string(highest_dpi);
  command
      .add_option_function<std::string>(
          "--dpi", take(to.dpi, parse_dpi, "--dpi", "N or NxM, each " + range + ", such as 600 or 600x300"),
          "pixels of the page per inch, or across and down (default 600); --cells makes several dots of each")
      ->type_name("N[xM]")
      ->group(paper_group);
  command
      .add_option_function<std::string>(
          "--size",
          take(to.paper, parse_paper, "--size",
               "A3 to A6, B4, B5, letter, legal, tabloid, or WIDTHxHEIGHT with mm, cm or in behind it, 1 mm to 10 m"),
          "size of the page: A4, letter, 10x15cm, 4x6in (default: " + usual_size + ")")
      ->type_name("SIZE")
      ->group(paper_group);
}

void add_page_options(CLI::App& command, page_options& to) {
  add_paper_options(command, to,
                    "by the resolution that the picture's file gives; where it gives none, a pixel of the picture is "
                    "one of the page");
  CLI::Option* const fit = command
                               .add_flag_callback(
                                   "--fit", [&to] { to.fill = false; },
                                   "all of the picture on the page, centred, with white margins (default)")
                               ->needs("--size")
                               ->group(paper_group);
  command.add_flag("--fill", to.fill, "no margins: where the picture is longer than the page, both ends are cut off")
      ->needs("--size")
      ->excludes(fit)
      ->group(paper_group);
  const std::map<std::string, std::optional<unsigned>> turns{{"auto", {}}, {"0", 0}, {"90", 1}, {"180", 2}, {"270", 3}};
  command
      .add_option_function<std::string>(
          "--rotate", [&to, turns](const std::string& text) { to.quarter_turns = turns.at(text); },
          "degrees clockwise, after the orientation that the file asks for; auto turns the "
          "picture by 90 where it is wide and the page of --size is high, or the other way round (default auto)")
      ->check(CLI::IsMember(turns))
      ->group(paper_group);
  command.add_flag("--ignore-orientation", to.as_stored, "do not turn the picture as its file asks for (EXIF)")
      ->group(paper_group);
}

}  // namespace vrk::tool
