// Colour tables from profiles, as the commands that take profiles make them.
#pragma once

#include "kit/profiles/link_table.h"
#include "kit/profiles/printed_dots.h"
#include "tools/color/link_accuracy.h"

namespace CLI {
class App;
}

namespace vrk::tool {

// What the command line says about the way from one profile to another.
struct profile_link {
  std::string to{};                   // path of the device's profile
  std::optional<std::string> from{};  // path of an RGB profile; sRGB without it
  std::string intent = "perceptual";  // or relative, saturation, absolute
  std::string channels{};             // of a six-colour profile, see profiles::ink_order_of; empty: the usual order
  profiles::link_options options{};   // without the intent and the order, which the strings give
};

// --intent, --bpc, --ink-limit and --channels.
void add_profile_options(CLI::App& command, profile_link& to, const std::string& group);

// The functions below throw user_error. name: what messages call the table by.
table make_linked_table(const profile_link& link, const profiles::table_form& form, const std::string& name);

// From the colours of a picture in C, M, Y, K, by its profile, to the device's inks.
std::shared_ptr<const profiles::color_link> make_ink_link(const profile_link& link, const table& picture);

// What a print of so many planes looks like by the device's profile. printed_as: as of printed_dots.
profiles::printed_dots make_printed_dots(const profile_link& link, unsigned planes,
                                         const profiles::printed_dots::dots_of_inks& printed_as);

struct judged_table {
  table made;
  unsigned channels;   // 3: "csc1"; 4 or 6: "csc2"
  bool intent_served;  // false: the device's profile has no table for the intent, its first one serves
  link_accuracy accuracy;
};
judged_table make_judged_table(const profile_link& link, const profiles::table_form& form, const std::string& name);

}  // namespace vrk::tool
