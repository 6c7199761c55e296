#include "tools/calibrate/measured_inks.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "tools/pipeline/halftone.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

using triple = std::array<double, 3>;

// Tones closer than this are one: files round them differently.
constexpr double same_tone = 0.002;
// Between two steps of a ramp, or its curve is a guess. 25 %, and as much as 8-bit tones are rounded.
constexpr double widest_gap = 0.255;

constexpr triple d50{0.9642, 1, 0.8249};

// CIE 15: L*, a*, b* and back.
triple lab_of(const triple& xyz) {
  triple f{};
  for (std::size_t i = 0; i < 3; ++i) {
    const double t = xyz[i] / d50[i];
    f[i] = t > 216.0 / 24389 ? std::cbrt(t) : (24389.0 / 27 * t + 16) / 116;
  }
  return {116 * f[1] - 16, 500 * (f[0] - f[1]), 200 * (f[1] - f[2])};
}

triple xyz_of(const triple& lab) {
  const double y = (lab[0] + 16) / 116;
  const triple f{y + lab[1] / 500, y, y - lab[2] / 200};
  triple xyz{};
  for (std::size_t i = 0; i < 3; ++i) {
    const double cube = f[i] * f[i] * f[i];
    xyz[i] = d50[i] * (cube > 216.0 / 24389 ? cube : (116 * f[i] - 16) * 27 / 24389);
  }
  return xyz;
}

std::string percent(double tone) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3g", 100 * tone);
  return text;
}

std::string listed(const std::vector<std::string>& items) {
  std::string text;
  for (const std::string& item : items) text += (text.empty() ? "" : ", ") + item;
  return text;
}

class patch_reader {
 public:
  patch_reader(const cgats_table& table, const std::string& name) : table_(table), name_(name) {
    if (table.type == "CTI1" || table.type == "CTI2") {
      throw user_error(name + ": says what a chart's patches are, expected measurements of them, such as a .ti3 file");
    }
    const ink_columns* const inks = columns_of(table);
    if (inks == nullptr) {
      throw user_error(name +
                       ": has no columns of inks, expected CMYK_C, CMYK_M, CMYK_Y and CMYK_K, or CMYKcm_C and "
                       "its five sisters, or GRAY_K");
    }
    for (const char ink : std::string_view(inks->letters))
      inks_.push_back(required(std::string(inks->family) + "_" + ink));
    if (table.column("LAB_L")) lab_ = columns("LAB_", "LAB");
    if (table.column("XYZ_X")) xyz_ = columns("XYZ_", "XYZ");
    if (lab_.empty() && xyz_.empty()) throw user_error(name + ": has no colours, expected columns LAB_L or XYZ_X");
    for (const char* const field : {"SAMPLE_LOC", "SAMPLE_NAME", "SAMPLE_ID"}) {
      if (!place_) place_ = table.column(field);
    }
  }

  std::size_t inks() const { return inks_.size(); }

  // What a patch has: one ink, of which tone is the share, `paper` or `several` inks.
  struct patch {
    std::size_t ink;
    double tone;
  };
  static constexpr std::size_t paper = 100, several = 101;
  patch ink_at(std::size_t row) const {
    patch found{paper, 0};
    for (std::size_t ink = 0; ink < inks_.size(); ++ink) {
      const double tone = number(row, inks_[ink], 0, 100.01) / 100;
      if (tone < same_tone / 2) continue;
      found = {found.ink == paper ? ink : several, std::min(tone, 1.0)};
    }
    return found;
  }

  measured_step color_at(std::size_t row, double tone) const {
    measured_step step{tone, {}, {}, 1};
    const auto read = [&](const std::vector<std::size_t>& from, triple& to, double scale) {
      for (std::size_t i = 0; i < from.size(); ++i) to[i] = number(row, from[i], -500, 500) / scale;
    };
    read(lab_, step.lab, 1);
    read(xyz_, step.xyz, 100);
    if (lab_.empty()) step.lab = lab_of(step.xyz);
    if (xyz_.empty()) step.xyz = xyz_of(step.lab);
    return step;
  }

 private:
  std::size_t required(const std::string& field) const {
    if (const auto at = table_.column(field)) return *at;
    throw user_error(name_ + ": has no column " + field);
  }

  std::vector<std::size_t> columns(const std::string& prefix, std::string_view letters) const {
    std::vector<std::size_t> at;
    for (const char letter : letters) at.push_back(required(prefix + letter));
    return at;
  }

  double number(std::size_t row, std::size_t column, double least, double most) const {
    const std::string& text = table_.at(row, column);
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc() && end == text.data() + text.size() && value >= least && value <= most) return value;
    char range[64];
    std::snprintf(range, sizeof range, "a number from %g to %g", least, most < 101 ? 100 : most);
    throw user_error(name_ + ": patch " + (place_ ? table_.at(row, *place_) : std::to_string(row + 1)).substr(0, 40) +
                     ": " + table_.fields[column] + " is \"" + text.substr(0, 40) + "\", expected " + range);
  }

  const cgats_table& table_;
  const std::string& name_;
  std::vector<std::size_t> inks_, lab_, xyz_;
  std::optional<std::size_t> place_;
};

// Sorts the steps, and makes one of those with the same tone.
measured_ramp merged(measured_ramp steps) {
  std::stable_sort(steps.begin(), steps.end(), [](const auto& a, const auto& b) { return a.tone < b.tone; });
  measured_ramp ramp;
  for (const measured_step& step : steps) {
    if (ramp.empty() || step.tone - ramp.back().tone > same_tone) {
      ramp.push_back(step);
      continue;
    }
    measured_step& to = ramp.back();
    const double share = step.patches / (to.patches + step.patches);
    for (std::size_t i = 0; i < 3; ++i) {
      to.lab[i] += share * (step.lab[i] - to.lab[i]);
      to.xyz[i] += share * (step.xyz[i] - to.xyz[i]);
    }
    to.patches += step.patches;
  }
  return ramp;
}

// Patches that a curve cannot do without.
std::vector<std::string> missing_from(const measured_ramp& ramp, std::string_view ink) {
  const std::string of = std::string(ink) + " ";
  std::vector<std::string> missing;
  if (ramp.empty() || ramp.back().tone < 1 - same_tone) missing.push_back(of + "100 %");
  for (std::size_t i = 1; i < ramp.size(); ++i) {
    if (ramp[i].tone - ramp[i - 1].tone <= widest_gap) continue;
    missing.push_back(of + "between " + percent(ramp[i - 1].tone) + " and " + percent(ramp[i].tone) + " %");
  }
  return missing;
}

// Steps that ramps of other inks have and this one has not.
std::vector<std::string> steps_of_others(const std::vector<measured_ramp>& ramps, std::size_t ink) {
  std::vector<double> tones;
  for (const measured_ramp& ramp : ramps) {
    for (const measured_step& step : ramp) {
      const auto near = [&](double tone) { return std::abs(tone - step.tone) <= same_tone; };
      const auto has = [&](const measured_step& own) { return near(own.tone); };
      if (std::any_of(ramps[ink].begin(), ramps[ink].end(), has) || std::any_of(tones.begin(), tones.end(), near))
        continue;
      tones.push_back(step.tone);
    }
  }
  std::sort(tones.begin(), tones.end());
  std::vector<std::string> names;
  for (const double tone : tones) names.push_back(percent(tone) + " %");
  return names;
}

}  // namespace

measured_inks find_ramps(const cgats_table& table, const std::string& name) {
  const patch_reader reader(table, name);
  measured_ramp paper;
  measured_inks found{std::vector<measured_ramp>(reader.inks()), {}};
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const auto [ink, tone] = reader.ink_at(row);
    if (ink == patch_reader::several) continue;
    (ink == patch_reader::paper ? paper : found.ramps[ink]).push_back(reader.color_at(row, tone));
  }

  std::vector<std::string> missing;
  if (paper.empty()) missing.push_back("paper (0 % of all inks)");
  for (std::size_t ink = 0; ink < found.ramps.size(); ++ink) {
    measured_ramp& ramp = found.ramps[ink];
    ramp.insert(ramp.end(), paper.begin(), paper.end());
    ramp = merged(std::move(ramp));
    const std::vector<std::string> more = missing_from(ramp, plane_names[ink]);
    missing.insert(missing.end(), more.begin(), more.end());
  }
  if (!missing.empty()) {
    throw user_error(name + ": has no patches for " + listed(missing) +
                     ": expected paper, and full tone and a step at least every 25 % of each ink alone");
  }
  for (std::size_t ink = 0; ink < found.ramps.size(); ++ink) {
    const std::vector<std::string> others = steps_of_others(found.ramps, ink);
    if (!others.empty()) {
      found.notes.push_back(std::string(plane_names[ink]) + ": has no patch for " + listed(others) +
                            ", as other inks do");
    }
  }
  return found;
}

}  // namespace vrk::tool
