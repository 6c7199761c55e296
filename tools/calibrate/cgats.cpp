#include "tools/calibrate/cgats.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

#include "kit/ink_model.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

// The one with the most inks first: its columns do not include those of another.
constexpr ink_columns known_inks[] = {{"CMYKcm", "KCMYcm"}, {"CMYK", "KCMY"}, {"GRAY", "K"}};

constexpr std::string_view blanks = " \t\r\n\f\v";

// Takes the next word from the text: between blanks, or between quotation marks. Comments are skipped. Empty at the
// end.
std::string_view take_word(std::string_view& text) {
  for (;;) {
    text.remove_prefix(std::min(text.size(), text.find_first_not_of(blanks)));
    if (text.empty() || text.front() != '#') break;
    text.remove_prefix(std::min(text.size(), text.find('\n')));
  }
  const bool quoted = !text.empty() && text.front() == '"';
  if (quoted) text.remove_prefix(1);
  const std::size_t length = std::min(text.size(), quoted ? text.find('"') : text.find_first_of(blanks));
  const std::string_view word = text.substr(0, length);
  text.remove_prefix(std::min(text.size(), length + quoted));
  return word;
}

// All words from behind `begin` to `end`.
std::vector<std::string> take_section(std::string_view& text, std::string_view begin, std::string_view end,
                                      const std::string& name) {
  const std::string missing = "is no CGATS file, or one that ends early: expected ";
  while (take_word(text) != begin) {
    if (text.empty()) throw user_error(name + ": " + missing + std::string(begin));
  }
  std::vector<std::string> words;
  for (;;) {
    const std::string_view word = take_word(text);
    if (word == end) return words;
    if (text.empty()) throw user_error(name + ": " + missing + std::string(end));
    words.emplace_back(word);
  }
}

std::array<double, 3> xyz_of(const std::array<std::uint8_t, 6>& tones, unsigned inks) {
  std::array<double, 6> coverage{};
  for (unsigned ink = 0; ink < inks; ++ink) coverage[ink] = tones[ink] / 255.0;
  const auto [r, g, b] = kit::print_color(coverage);
  // The sRGB primaries under D50, by the matrix of ICC's sRGB profile, of Y = 100 for the paper.
  return {43.61 * r + 38.51 * g + 14.31 * b, 22.25 * r + 71.69 * g + 6.06 * b, 1.39 * r + 9.71 * g + 71.39 * b};
}

}  // namespace

std::optional<std::size_t> cgats_table::column(std::string_view field) const {
  const auto found = std::find(fields.begin(), fields.end(), field);
  if (found == fields.end()) return {};
  return std::size_t(found - fields.begin());
}

cgats_table parse_cgats(std::string_view text, const std::string& name) {
  cgats_table table;
  std::string_view rest = text;
  table.type = take_word(rest);
  table.fields = take_section(text, "BEGIN_DATA_FORMAT", "END_DATA_FORMAT", name);
  if (table.fields.empty()) throw user_error(name + ": names no columns between BEGIN_DATA_FORMAT and END_DATA_FORMAT");
  table.values = take_section(text, "BEGIN_DATA", "END_DATA", name);
  if (const std::size_t over = table.values.size() % table.fields.size(); over != 0) {
    throw user_error(name + ": the last patch has " + std::to_string(over) + " values, expected " +
                     std::to_string(table.fields.size()) + ", or a value is missing before it");
  }
  return table;
}

const ink_columns* columns_of(const cgats_table& table) {
  const auto* const found = std::find_if(std::begin(known_inks), std::end(known_inks), [&](const ink_columns& inks) {
    const std::string_view letters = inks.letters;
    return std::all_of(letters.begin(), letters.end(),
                       [&](char ink) { return table.column(std::string(inks.family) + "_" + ink).has_value(); });
  });
  return found == std::end(known_inks) ? nullptr : found;
}

std::string cgats_of(const step_chart& chart) {
  const auto* const names = std::find_if(std::begin(known_inks), std::end(known_inks), [&](const ink_columns& inks) {
    return std::string_view(inks.letters).size() == chart.inks;
  });
  const std::string family = chart.inks == 1 ? "K" : names->family;  // its letters are in the usual order of columns
  const auto plane_of = [&](char ink) { return std::string_view(names->letters).find(ink); };
  std::ostringstream text;
  text << "CTI2\n\nDESCRIPTOR \"Step chart, printed without curves\"\nORIGINATOR \"vrk\"\n"
       << "COLOR_REP \"" << family << "\"\nSTEPS_IN_PASS \"" << chart.columns << "\"\nPASSES_IN_STRIPS2 \""
       << chart.rows << "\"\n"
       << "STRIP_INDEX_PATTERN \"A-Z, A-Z\"\nPATCH_INDEX_PATTERN \"0-9,@-9,@-9;1-999\"\n"
       << "INDEX_ORDER \"STRIP_THEN_PATCH\"\n\n"
       << "BEGIN_DATA_FORMAT\nSAMPLE_ID SAMPLE_LOC";
  for (const char ink : family) text << ' ' << names->family << '_' << ink;
  text << " XYZ_X XYZ_Y XYZ_Z\nEND_DATA_FORMAT\n\n"
       << "NUMBER_OF_SETS " << chart.patches.size() << "\nBEGIN_DATA\n"
       << std::fixed << std::setprecision(4);
  std::size_t number = 0;
  for (const chart_patch& patch : chart.patches) {
    text << ++number << " \"" << patch.place << '"';
    for (const char ink : family) text << ' ' << patch.tones[plane_of(ink)] / 2.55;
    for (const double value : xyz_of(patch.tones, chart.inks)) text << ' ' << value;
    text << '\n';
  }
  text << "END_DATA\n";
  return text.str();
}

}  // namespace vrk::tool
