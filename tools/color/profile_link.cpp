#include "tools/color/profile_link.h"

#include <CLI/CLI.hpp>

#include <map>

#include "tools/command_line/finite_range.h"
#include "tools/pipeline/user_error.h"
#include "tools/print/blob_argument.h"

namespace vrk::tool {
namespace {

using profiles::intent;

const std::map<std::string, intent> intents{{"perceptual", intent::perceptual},
                                            {"relative", intent::relative},
                                            {"saturation", intent::saturation},
                                            {"absolute", intent::absolute}};

profiles::profile profile_of(const table& file) { return {file.name, file.image}; }

profiles::profile source_of(const profile_link& link) {
  if (!link.from) return profiles::profile::srgb();
  profiles::profile from = profile_of(read_table(*link.from));
  if (from.channels() == 3) return from;
  throw profiles::profile_error(from.name() + ": is no RGB profile, which the source has to be");
}

profiles::link_options options_of(const profile_link& link, const profiles::profile& to) {
  profiles::link_options options = link.options;
  options.rendering = intents.at(link.intent);
  if (options.black_point_compensation && options.rendering == intent::absolute) {
    throw usage_error("--bpc moves black, which --intent absolute leaves where it is: use one of the two");
  }
  if (link.channels.empty()) return options;
  if (to.channels() != 6) throw usage_error("--channels is for profiles of six inks, which " + to.name() + " is not");
  const auto order = profiles::ink_order_of(link.channels);
  if (!order)
    throw usage_error("--channels " + link.channels + ": expected C, M, Y, K, c and m (or 5 and 6), each once");
  options.order = *order;
  return options;
}

// Profiles that have been read and fit together.
struct open_link {
  profiles::profile to;
  profiles::link_options options;
  profiles::color_link colors;

  open_link(const profile_link& link, const profiles::profile& from)
      : to(profile_of(read_table(link.to))), options(options_of(link, to)), colors(from, to, options) {}
  explicit open_link(const profile_link& link) : open_link(link, source_of(link)) {}
};

// What profiles complain about is the user's to put right.
template <class Work>
auto explained(const Work& work) {
  try {
    return work();
  } catch (const profiles::profile_error& error) {
    throw user_error(error.what());
  }
}

}  // namespace

void add_profile_options(CLI::App& command, profile_link& to, const std::string& group) {
  command
      .add_option("--intent", to.intent, "what is kept of colours that the device cannot print (default perceptual)")
      ->check(CLI::IsMember(intents))
      ->group(group);
  command
      .add_flag("--bpc", to.options.black_point_compensation,
                "black point compensation: black becomes the darkest that the device prints")
      ->group(group);
  command
      .add_option("--ink-limit", to.options.ink_limit,
                  "most ink that a surface takes, 100 for each ink in full; black stays, the others give way")
      ->type_name("PERCENT")
      ->check(finite_range(10, 600))
      ->group(group);
  command
      .add_option("--channels", to.channels,
                  "order of the channels of a six-colour profile: c and m are the light inks, or 5 and 6 the fifth and "
                  "sixth ink (default CMYKcm)")
      ->type_name("LETTERS")
      ->group(group);
}

table make_linked_table(const profile_link& link, const profiles::table_form& form, const std::string& name) {
  return explained([&] { return table{name, profiles::link_table(open_link(link).colors, form).encode()}; });
}

std::shared_ptr<const profiles::color_link> make_ink_link(const profile_link& link, const table& picture) {
  return explained([&] {
    open_link open(link, profile_of(picture));
    if (open.colors.channels() == 3) throw user_error(link.to + ": is no profile of a printer with four or six inks");
    return std::make_shared<const profiles::color_link>(std::move(open.colors));
  });
}

profiles::printed_dots make_printed_dots(const profile_link& link, unsigned planes,
                                         const profiles::printed_dots::dots_of_inks& printed_as) {
  return explained([&] {
    const profiles::profile to = profile_of(read_table(link.to));
    return profiles::printed_dots(profiles::printed_color(to, options_of(link, to).order), planes, printed_as);
  });
}

judged_table make_judged_table(const profile_link& link, const profiles::table_form& form, const std::string& name) {
  return explained([&] {
    const open_link open(link);
    const profiles::printed_color shown(open.to, open.options.order);
    table made{name, profiles::link_table(open.colors, form).encode()};
    const link_accuracy accuracy = measure_link(made, form.precision, open.colors, shown);
    return judged_table{std::move(made), open.colors.channels(), open.colors.intent_served(), accuracy};
  });
}

}  // namespace vrk::tool
