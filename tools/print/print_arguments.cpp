#include "tools/print/print_arguments.h"

#include <map>

#include "tools/command_line/not_empty.h"
#include "tools/print/dot_arguments.h"

namespace vrk::tool {
namespace {

const CLI::Validator media_and_file(
    [](const std::string& text) {
      const std::size_t equals = text.find('=');
      const bool both = equals != 0 && equals < text.size() - 1;
      return both ? std::string() : "--media-table " + text + ": expected TYPE=FILE, such as Glossy=colors.bin";
    },
    "");

// One of several names. Settings files save the name.
template <class Value, class To>
CLI::Option* add_choice(CLI::App& command, const std::string& option, const std::map<std::string, Value>& choices,
                        To& to, const std::string& help) {
  return command
      .add_option_function<std::string>(
          option, [&to, choices](const std::string& name) { to = choices.at(name); }, help)
      ->check(CLI::IsMember(choices))
      ->type_name("NAME");
}

void add_tone_options(CLI::App& command, tone_options& to) {
  const std::string group = "Tone of the picture";
  command.add_option("--balance", to.balance, "first pre-processor: steps that lift the middle of R, G, B")
      ->type_name("R,G,B")
      ->delimiter(',')
      ->expected(3)
      ->check(CLI::Range(-20, 20))
      ->group(group);
  command.add_option("--lift", to.lift, "first pre-processor: steps of 5 % that lift all levels, fading out at white")
      ->check(CLI::Range(-20, 20))
      ->group(group);
  command.add_option("--contrast", to.contrast, "steps of contrast about the middle")
      ->check(CLI::Range(-5, 20))
      ->group(group);
  command
      .add_option("--balance2", to.balance2, "second pre-processor: A raises R against G and B, B lowers B against G")
      ->type_name("A,B")
      ->delimiter(',')
      ->expected(2)
      ->check(CLI::Range(-5, 5))
      ->group(group);
  command
      .add_option("--curve", to.curves,
                  "tone curve: for all channels, or for the channel that r=, g= or b= names; may be repeated")
      ->type_name("[CHANNEL=]CURVE")
      ->check(not_empty)
      ->allow_extra_args(false)
      ->group(group);
}

void add_ink_options(CLI::App& command, ink_options& to) {
  const std::string group = "Inks";
  command.add_option("--inks", to.count, "1: K, 4: K C M Y, 6: with light cyan and light magenta (default 4)")
      ->check(CLI::IsMember({"1", "4", "6"}))
      ->group(group);
  command.add_flag("--split", to.split, "six inks: four, of which cyan and magenta are split into light and full")
      ->group(group);
  command
      .add_option("--post", to.plane_curves,
                  "curve of post-processing: for all planes (a file may hold one for each), or for the plane that k=, "
                  "c=, m=, y=, lc= or lm= names; may be repeated")
      ->type_name("[PLANE=]CURVE")
      ->check(not_empty)
      ->allow_extra_args(false)
      ->group(group);
  CLI::Option* const profile =
      command.add_option("--profile", to.profile.to, "ICC profile of the printer: a colour table is made from it")
          ->type_name("ICC")
          ->check(not_empty)
          ->group(group);
  add_profile_options(command, to.profile, group);
  for (const char* const name : {"--intent", "--bpc", "--channels"}) command.get_option(name)->needs(profile);
}

void add_run_options(CLI::App& command, print_options& to) {
  const std::string group = "Work";
  add_choice<pixel_layout>(command, "--layout",
                           {{"rgb", pixel_layout::rgb},
                            {"bgr", pixel_layout::bgr},
                            {"bgrx", pixel_layout::bgrx},
                            {"xrgb", pixel_layout::xrgb}},
                           to.layout, "pixel layout between stages (default rgb); the print stays the same")
      ->group(group);
  command.add_flag("--width16", to.width16, "16-bit samples from the first stage to the last")->group(group);
  command.add_option("--threads", to.threads, "threads to work with (default: one per core); the print stays the same")
      ->check(CLI::Range(1, 256))
      ->group(group);
}

void add_table_files(CLI::App& command, table_files& to) {
  const std::string group = "Tables of your own";
  const auto add = [&](const char* option, std::string& path, const char* help) {
    command.add_option(option, path, help)->type_name("FILE")->check(not_empty)->group(group);
  };
  add("--csc1", to.csc1, "RGB to RGB, before the inks");
  add("--csc2", to.csc2, "RGB to inks");
  add("--edpr", to.edpr, "error diffusion: levels, thresholds, cells");
  add("--edtb", to.edtb, "error diffusion: error distribution");
  add("--dith", to.dith, "dither: levels and threshold matrices");
  command.add_option("--blob", to.blobs, "table out of a parameter blob; may be repeated")
      ->type_name("FILE[:SELECTOR=VALUE,...]")
      ->check(not_empty)
      ->allow_extra_args(false)
      ->group(group);
  command
      .add_option("--media-table", to.media,
                  "as --blob, for those pages of a raster stream whose header names this type of media (MediaType); "
                  "may be repeated")
      ->type_name("TYPE=FILE[:SELECTOR=VALUE,...]")
      ->check(media_and_file)
      ->allow_extra_args(false)
      ->group(group);
}

void add_preview_options(CLI::App& command, picture_options& to) {
  CLI::Option* const without =
      command
          .add_flag_callback(
              "--no-preview", [&to] { to.drawn = false; }, "draw neither preview.png nor detail.png, which saves time")
          ->group(picture_group);
  command.add_option("--preview-size", to.preview_size, "pixels of the longer side of preview.png, at most")
      ->check(CLI::Range(16, 16384))
      ->capture_default_str()
      ->excludes(without)
      ->group(picture_group);
}

void add_format_options(CLI::App& command, print_options& to) {
  add_choice<print_format>(command, "--format",
                           {{"planes", print_format::planes},
                            {"tiff", print_format::tiff},
                            {"cups", print_format::cups},
                            {"pwg", print_format::pwg}},
                           to.format,
                           "planes: a PBM or PGM file for each ink (default); tiff: print.tif, with all inks; cups: "
                           "print.ras, CUPS raster in "
                           "K, KCMY or KCMYcm; pwg: print.pwg, PWG raster in K or CMYK");
  add_choice<plane_order>(
      command, "--order",
      {{"chunky", plane_order::chunky}, {"banded", plane_order::banded}, {"planar", plane_order::planar}}, to.order,
      "of the inks in a CUPS raster: chunky, dot by dot (default); banded, line by line; planar, one after the other");
}

}  // namespace

void add_print_options(CLI::App& command, print_options& to) {
  add_format_options(command, to);
  add_tone_options(command, to.tone);
  add_ink_options(command, to.inks);
  add_dot_options(command, to.dots);
  add_table_files(command, to.files);
  add_preview_options(command, to.pictures);
  add_run_options(command, to);
}

void add_detail_option(CLI::App& command, picture_options& to) {
  command
      .add_option_function<std::vector<unsigned>>(
          "--detail",
          [&to](const std::vector<unsigned>& place) {
            to.detail_centre = {place[0], place[1]};
          },
          "centre of detail.png, in pixels of the page (default: its centre)")
      ->type_name("X Y")
      ->expected(2)
      ->check(CLI::Range(0, 999999))
      ->excludes("--no-preview")
      ->group(picture_group);
}

}  // namespace vrk::tool
