// What the colours of a picture are taken for, and what is printed of them.
#include "tools/color/open_picture.h"

#include <numeric>

#include "kit/planes.h"
#include "kit/srgb.h"
#include "tests/samples.h"
#include "tests/tools/color/made_profile.h"
#include "tests/tools/image/made_pictures.h"
#include "tests/tools/print/print_job.h"

namespace {

using namespace vrk::test;
using vrk::kit::bytes;
using vrk::tool::open_picture;

struct picture_color : print_job {};

constexpr unsigned width = 16, height = 12;

// Smooth, so that JPEG keeps it; of any depth.
std::string lines_of(unsigned line_bytes) {
  std::string lines;
  for (unsigned i = 0; i < height * line_bytes; ++i) lines += char(200 - 9 * (i / line_bytes) - 20 * (i % 4 % 3));
  return lines;
}

bytes lines_read(vrk::tool::image_reader& from) {
  bytes lines(from.line_bytes() * from.height());
  for (unsigned y = 0; y < from.height(); ++y) from.read_line(&lines[y * from.line_bytes()]);
  return lines;
}

// By Little CMS alone.
bytes converted(const bytes& icc, const bytes& lines, cmsUInt32Number from, cmsUInt32Number to) {
  const icc_profile source(cmsOpenProfileFromMem(icc.data(), unsigned(icc.size()))), srgb(cmsCreate_sRGBProfile());
  const icc_transform transform(
      cmsCreateTransform(source.get(), from, srgb.get(), to, INTENT_RELATIVE_COLORIMETRIC,
                         cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE | cmsFLAGS_BLACKPOINTCOMPENSATION));
  const std::size_t pixels = lines.size() / T_CHANNELS(from) / T_BYTES(from);
  bytes result(pixels * T_CHANNELS(to) * T_BYTES(to));
  cmsDoTransform(transform.get(), lines.data(), result.data(), unsigned(pixels));
  return result;
}

std::string png(int depth, int type, const std::function<void(png_structp, png_infop)>& note) {
  const unsigned channels = (type & PNG_COLOR_MASK_PALETTE) != 0
                                ? 1
                                : (type & PNG_COLOR_MASK_COLOR) + 1U + ((type & PNG_COLOR_MASK_ALPHA) != 0);
  return made_png(width, height, lines_of(width * channels * unsigned(depth) / 8), depth, type, PNG_INTERLACE_NONE,
                  note);
}

std::string jpeg(int channels, const std::function<void(jpeg_compress_struct&)>& note) {
  const J_COLOR_SPACE space = channels == 1 ? JCS_GRAYSCALE : channels == 3 ? JCS_RGB : JCS_CMYK;
  return made_jpeg(width, height, lines_of(width * unsigned(channels)), channels, space, {}, note);
}

TEST_F(picture_color, is_what_the_file_says) {
  const bytes own = saved(rgb_profile(1.5)), adobe = saved(rgb_profile(563.0 / 256, {0.21, 0.71, 1})),
              inks = printer_profile("CMYK").encode(), none;
  const auto embed = [&](png_structp to, png_infop info) {
    png_set_iCCP(to, info, "own", PNG_COMPRESSION_TYPE_BASE, own.data(), unsigned(own.size()));
    png_set_gAMA(to, info, 1);
  };
  const auto gamma = [](double inverse, double green_x, double green_y) {
    return [=](png_structp to, png_infop info) {
      png_set_gAMA(to, info, inverse);
      if (green_x != 0) png_set_cHRM(to, info, 0.3127, 0.329, 0.64, 0.33, green_x, green_y, 0.15, 0.06);
    };
  };
  const auto noted = [](const std::string& exif) {
    return [=](jpeg_compress_struct& to) { write_marker(to, JPEG_APP0 + 1, std::string("Exif\0\0", 6) + exif); };
  };
  const auto with = [](const bytes& icc) {
    return [&icc](jpeg_compress_struct& to) { jpeg_write_icc_profile(&to, icc.data(), unsigned(icc.size())); };
  };
  ASSERT_GT(inks.size(), 2 * 65519u) << "fits into two markers";
  const bytes text{'t', 'e', 'x', 't'};
  constexpr int rgb = PNG_COLOR_TYPE_RGB;
  constexpr unsigned r03 = 0x52303300;  // of Adobe RGB
  const struct {
    const char* name;
    std::string file;
    const bytes& expected;  // of sRGB: none
    const char* description;
    const char* said = "";
  } cases[] = {
      {"icc.png", png(8, rgb, embed), own, "RGB built-in"},
      {"gamma.png", png(8, rgb, gamma(1 / 1.5, 0, 0)), own, "gamma 1.5"},
      {"primaries.png", png(16, rgb, gamma(256.0 / 563, 0.21, 0.71)), adobe, "gamma 2.2 with primaries of its own"},
      {"exif.jpg", jpeg(3, noted(exif_of_color(0xFFFF, r03))), adobe, "Adobe RGB (1998)"},
      {"inks.jpg", jpeg(4, with(inks)), inks, "a profile without a name"},
      {"nothing.png", png(8, rgb, {}), none, "sRGB"},
      {"same.png", png(8, rgb, [](auto to, auto info) { png_set_sRGB(to, info, 0); }), none, "sRGB"},
      {"usual.png", png(8, rgb, gamma(1 / 2.2, 0.30, 0.60)), none, "sRGB"},
      {"camera.jpg", jpeg(3, noted(exif_of_color(1, r03))), none, "sRGB"},
      {"text.jpg", jpeg(3, with(text)), none, "sRGB", "text.jpg: is no ICC profile, or a damaged one; "},
      {"cut.jpg", jpeg(3, [&](auto& to) { write_marker(to, JPEG_APP0 + 2, std::string("ICC_PROFILE\0\1\2.", 15)); }),
       none, "sRGB", "is no ICC profile, or a damaged one; the picture counts as sRGB"},
      {"gray.jpg", jpeg(1, with(own)), none, "sRGB", "is no profile for gray"},
      {"ink.jpg", jpeg(4, with(own)), none, "inks", "is no profile for CMYK"},
  };
  for (const auto& c : cases) {
    const std::string file = save(c.name, c.file);
    const auto stored = vrk::tool::open_image(file);
    const unsigned channels = stored->channels(), size = stored->bits() / 8;
    const bytes untouched = lines_read(*stored);
    testing::internal::CaptureStderr();
    const auto read = open_picture({file});
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_NE(said.find(c.said), std::string::npos) << c.name << " says: " << said;
    EXPECT_EQ(said.empty(), *c.said == 0) << c.name;
    EXPECT_EQ(read->colors().profile, c.description) << c.name;
    EXPECT_EQ(lines_read(*open_picture({.path = file, .profile = "none"})), untouched) << c.name;
    const bytes lines = lines_read(*read);
    if (c.expected.empty()) {
      EXPECT_EQ(lines, untouched) << c.name;
      continue;
    }
    const cmsUInt32Number from = CHANNELS_SH(channels) | BYTES_SH(size), to = CHANNELS_SH(3) | BYTES_SH(size);
    const samples is = unpacked(lines, size == 2),
                  wanted = unpacked(converted(c.expected, untouched, from, to), size == 2);
    ASSERT_EQ(is.size(), wanted.size()) << c.name;
    for (std::size_t i = 0; i < is.size(); ++i) ASSERT_NEAR(is[i], wanted[i], size) << c.name << " " << i;
  }
  const std::string gray = save("gray.png", png(8, PNG_COLOR_TYPE_GRAY, gamma(1 / 1.5, 0, 0)));
  const double level = lines_read(*vrk::tool::open_image(gray))[0] / 255.0;
  EXPECT_NEAR(lines_read(*open_picture({gray}))[0], 255 * vrk::kit::linear_to_srgb(std::pow(level, 1.5)), 1);
  const std::string file = path("inks.jpg");
  EXPECT_NE(complaint([&] { open_picture({file, 1 << 16}); }).find("notes and profiles"), std::string::npos);
  EXPECT_NE(complaint([&] { open_picture({.path = file, .profile = save("own.icc", own)}); }).find("for CMYK"),
            std::string::npos);
}

TEST_F(picture_color, alpha_is_mixed_as_stored) {
  bytes shares(256);
  std::iota(shares.begin(), shares.end(), std::uint8_t{0});
  for (const int type : {PNG_COLOR_TYPE_RGBA, PNG_COLOR_TYPE_GRAY_ALPHA, PNG_COLOR_TYPE_PALETTE}) {
    const auto mixed = [&](double inverse) {
      const std::string file = png(type == PNG_COLOR_TYPE_GRAY_ALPHA ? 16 : 8, type, [&](auto to, auto info) {
        if (type == PNG_COLOR_TYPE_PALETTE) png_set_tRNS(to, info, shares.data(), 256, nullptr);
        if (inverse != 0) png_set_gAMA(to, info, inverse);
      });
      return lines_read(*vrk::tool::open_image(save("alpha.png", file)));
    };
    EXPECT_EQ(mixed(1), mixed(0)) << type;
    EXPECT_EQ(mixed(1 / 2.2), mixed(0)) << type;
  }
}

TEST_F(picture_color, inks_go_from_their_profile_to_the_printers) {
  const bytes own = printer_profile("CMYK", 1.5).encode();
  const bytes color{0xC0, 0x60, 0x20, 0x30};
  const auto flat = [](std::string page, const bytes& pixel) {
    for (unsigned i = 0; i < 64 * 64; ++i) page.append(pixel.begin(), pixel.end());
    return page;
  };
  const std::string page = save("page.pam",
                                flat("P7\nWIDTH 64\nHEIGHT 64\nDEPTH 4\nMAXVAL 255\nTUPLTYPE CMYK\nENDHDR\n", color)),
                    shown = save("page.ppm", flat("P6 64 64 255\n", converted(own, color, TYPE_CMYK_8, TYPE_RGB_8))),
                    named = " --picture-profile " + save("own.icc", own);
  const std::vector<std::string> as_srgb = print(shown, few_points_).planes;
  EXPECT_NE(load(path("out/manifest.json")).find(R"("origin": "assumed")"), std::string::npos);
  EXPECT_EQ(print(page, few_points_ + named).planes, as_srgb);
  expect_inks(page, "", {0x30 / 255.0, 0xC0 / 255.0, 0x60 / 255.0, 0x20 / 255.0});
  EXPECT_NE(load(path("out/manifest.json")).find(R"("name": "inks")"), std::string::npos);

  for (const char* const channels : {"CMYK", "CMYKcm"}) {
    const bytes to = printer_profile(channels).encode();
    const unsigned count = unsigned(std::string_view(channels).size());
    const icc_profile from(cmsOpenProfileFromMem(own.data(), unsigned(own.size()))),
        device(cmsOpenProfileFromMem(to.data(), unsigned(to.size())));
    const icc_transform link(cmsCreateTransform(from.get(), TYPE_CMYK_8, device.get(), CHANNELS_SH(count) | BYTES_SH(2),
                                                INTENT_SATURATION, cmsFLAGS_NOOPTIMIZE));
    std::uint16_t linked[6];
    cmsDoTransform(link.get(), color.data(), linked, 1);
    std::vector<double> shares;
    for (unsigned p = 0; p < count; ++p) shares.push_back(linked[vrk::kit::table_position[p]] / 65535.0);
    const std::string options = named + " --intent saturation --profile " + save("to.icc", to);
    expect_inks(page, options, shares);
    expect_inks(page, options + " --width16", shares);
    EXPECT_NE(load(path("out/manifest.json")).find(R"("origin": "named")"), std::string::npos);
    for (const std::string& limited : {options, named, std::string()}) {
      const std::vector<double> coverage = print(page, limited + " --ink-limit 90").coverage;
      EXPECT_LT(std::accumulate(coverage.begin(), coverage.end(), 0.0), 0.91) << limited;
    }
  }
  const std::string profile = " --profile " + path("to.icc");
  expect_complaint(page, profile, "name its profile by --picture-profile");
  expect_complaint(page, named + profile + " --inks 4", "ask for other inks");
  expect_complaint(page, named + profile + " --contrast 2", "needs no conversion");
}

TEST_F(picture_color, and_the_way_up_count_in_a_comparison) {
  const bytes own = saved(rgb_profile(1.5));
  const auto compared = [&](const std::string& file) {
    CLI::App program;
    vrk::tool::add_compare_command(program);
    save("picture", file);
    testing::internal::CaptureStdout();
    program.parse("compare " + path("picture") + " -o " + path("out") + " --modulation none");
    testing::internal::GetCapturedStdout();
    return load(path("out/compare.png"));
  };
  const auto noted = [&](png_structp to, png_infop info) {
    std::string block = exif(3, 300, 2);
    png_set_eXIf_1(to, info, unsigned(block.size()), reinterpret_cast<png_bytep>(block.data()));
    png_set_iCCP(to, info, "own", PNG_COMPRESSION_TYPE_BASE, own.data(), unsigned(own.size()));
  };
  const std::string stored = lines_of(3 * width);
  const bytes seen = converted(own, bytes(stored.begin(), stored.end()), TYPE_RGB_8, TYPE_BGR_8);
  const auto file = [&](const std::string& lines, const auto& note) {
    return made_png(width, height, lines, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, note);
  };
  EXPECT_EQ(compared(file(stored, noted)), compared("P6 16 12 255\n" + std::string(seen.rbegin(), seen.rend())));
}

}  // namespace
