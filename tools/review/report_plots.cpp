#include "tools/review/report_plots.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <tuple>

#include "tools/drawing/chart.h"

namespace vrk::tool {
namespace {

constexpr pixel orange{222, 120, 30}, blue{35, 95, 190}, good{226, 242, 226}, bad{250, 228, 224}, mark{120, 126, 134},
    seam_area{244, 240, 222};

std::string conditions(const report_options& options) {
  return std::to_string(options.levels) + " levels, error diffusion " +
         (options.noise ? "with noise modulation" : "without modulation");
}

std::string formatted(const char* format, double value) {
  char text[96];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

// In percent of full ink, over the tones 1 ... 254.
std::vector<pictures::point> curve_of(const tone_errors& errors) {
  std::vector<pictures::point> curve;
  for (std::size_t i = 0; i < errors.size(); ++i) curve.push_back({double(i + 1), 100 * errors[i]});
  return curve;
}

// An axis for errors up to `largest` percent. Its scale is one of four, so that charts can be compared.
chart_axis error_axis(double largest) {
  double step = 0.5;
  for (const double coarser : {2.5, 10.0, 20.0}) {
    if (largest > 3 * step) step = coarser;
  }
  chart_axis axis{"% of full ink", -3 * step, 3 * step, {}};
  for (int i = -2; i <= 2; ++i) axis.ticks.push_back({i * step, formatted("%g", i * step)});
  return axis;
}

}  // namespace

void plot_tones(const std::vector<choice_report>& reports, const report_options& options, output_file& to) {
  chart_sheet sheet(reports.size(), "Tone of flat patches",
                    "ink placed less ink asked for, patches of 256 x 256 pixels, " + conditions(options));
  sheet.explain("8-bit samples, 8-bit precision", orange);
  sheet.explain("16-bit samples", blue);
  sheet.explain("at most 0.5 % off", good, true);
  const chart_axis tone{"tone", 0, 255, {{0, "0"}, {64, "64"}, {128, "128"}, {192, "192"}, {255, "255"}}};
  for (const choice_report& r : reports) {
    const double largest =
        100 * std::max(std::abs(r.errors8[worst(r.errors8)]), std::abs(r.errors16[worst(r.errors16)]));
    chart plot = sheet.add(r.choice.name, formatted("at most %.2f %% off", largest), tone, error_axis(largest));
    plot.shade({0, -100 * tone_bar}, {255, 100 * tone_bar}, good);
    plot.draw_axes();
    plot.plot(curve_of(r.errors8), orange);
    plot.plot(curve_of(r.errors16), blue);
  }
  sheet.save(to);
}

void plot_spectra(const std::vector<choice_report>& reports, const report_options& options, output_file& to) {
  chart_sheet sheet(reports.size(), "Spectrum of a flat patch",
                    "radially averaged, of the tone with the most power at low frequencies, " + conditions(options));
  sheet.explain("power in dB, 0 for white noise", blue);
  sheet.explain("dots as far apart as possible", mark);
  sheet.explain("a peak in this area is visible as structure", bad, true);
  chart_axis frequency{"cycles per pixel", 0, 0.71, {}}, power{"dB", -50, 20, {{-40, "-40"}, {-20, "-20"}, {0, "0"}}};
  for (int i = 0; i <= 7; ++i) frequency.ticks.push_back({i / 10.0, formatted("%g", i / 10.0)});
  for (const choice_report& r : reports) {
    const tone_spectrum& clouds = r.cloudiest();
    const auto& [tone, share, spectrum] = std::tie(clouds.tone, clouds.share, clouds.power);
    const double principal = principal_frequency(share), low = low_power(spectrum, share);
    const double rounded = std::round(decibels(low)) + 0.0;  // no -0
    const std::string remark = "tone " + std::to_string(tone) + formatted(", low frequencies %.0f dB", rounded);
    chart plot = sheet.add(r.choice.name, low > 0 ? remark : "", frequency, power);
    plot.shade({0, 0}, {principal / 2, power.to}, bad);
    plot.draw_axes();
    plot.plot({{principal, power.from}, {principal, power.to}}, mark, 1);
    std::vector<pictures::point> curve;
    for (std::size_t i = 1; i < spectrum.size(); ++i) {
      curve.push_back({double(i) / spectrum_window, decibels(spectrum[i])});
    }
    plot.plot(curve, blue);
  }
  sheet.save(to);
}

void plot_noise(const std::vector<choice_report>& reports, const report_options& options, output_file& to) {
  chart_sheet sheet(reports.size(), "Visible noise of flat patches",
                    formatted("RMS of the dots as an eye sees them at %g cm, ", options.view.distance_cm) +
                        formatted("%g dpi, ", options.view.dpi) + conditions(options));
  sheet.explain("noise, % of full ink", blue);
  sheet.explain("where seams may be", seam_area, true);
  // One scale for all, so that charts can be compared; what goes beyond it is too much in any case.
  chart_axis noise{"% of full ink", 0, 0.5, {}};
  for (int i = 0; i < 5; ++i) noise.ticks.push_back({i / 10.0, formatted("%g", i / 10.0)});
  const chart_axis tone{"tone", 0, 255, {{0, "0"}, {64, "64"}, {128, "128"}, {192, "192"}, {255, "255"}}};
  for (const choice_report& r : reports) {
    const tone_noise& worst = r.noisiest();
    chart plot = sheet.add(r.choice.name,
                           formatted("mean %.2f", r.mean_noise.eye) + formatted(", worst %.2f at ", worst.noise.eye) +
                               std::to_string(worst.tone),
                           tone, noise);
    for (const double place : {64.0, 128.0, 191.0}) plot.shade({place - 4, 0}, {place + 4, noise.to}, seam_area);
    plot.draw_axes();
    std::vector<pictures::point> curve;
    for (const tone_noise& n : r.noise) curve.push_back({double(n.tone), n.noise.eye});
    plot.plot(curve, blue);
  }
  sheet.save(to);
}

}  // namespace vrk::tool
