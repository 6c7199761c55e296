// Pictures that the program reads: every format, whole and cut short.
#include <gtest/gtest.h>
#include <webp/encode.h>
#include <webp/mux.h>
#include <zlib.h>

#include "tests/samples.h"
#include "tests/tools/image/made_pictures.h"
#include "tests/tools/image/made_tiff.h"
#include "tests/tools/scratch.h"
#include "tools/image/image_reader.h"

namespace {

using namespace vrk::tool;
using vrk::test::complaint;
using vrk::test::exif;
using vrk::test::samples;
using vrk::test::tiff_layout;

struct image : vrk::test::scratch {};

constexpr unsigned width = 21, height = 13;

// The samples of a whole picture.
template <class Sample>
samples drawn(unsigned channels, Sample at) {
  samples all;
  for (unsigned y = 0; y < height; ++y) {
    for (unsigned x = 0; x < width; ++x) {
      for (unsigned c = 0; c < channels; ++c) all.push_back(std::uint16_t(at(x, y, c)));
    }
  }
  return all;
}

// The test picture: smooth, in colour, nothing alike in two channels. 0 ... 255.
unsigned level(unsigned x, unsigned y, unsigned channel) {
  return (5 * x + 9 * y + 60 * channel) % 220 + 20 * (channel == 2);
}

// What a file of one byte per sample stores.
std::string stored(const samples& all) { return {all.begin(), all.end()}; }

std::string png(const std::string& lines, int depth, int type, int interlace = PNG_INTERLACE_NONE,
                const std::function<void(png_structp, png_infop)>& note = {}) {
  return vrk::test::made_png(width, height, lines, depth, type, interlace, note);
}

std::string jpeg(const std::string& lines, int channels, J_COLOR_SPACE space, bool progressive = false,
                 int density_unit = 0, const std::string& exif = {}) {
  const auto set = [&](jpeg_compress_struct& to) {
    if (progressive) jpeg_simple_progression(&to);
    to.density_unit = UINT8(density_unit);
    to.X_density = 100;
    to.Y_density = 50;
  };
  return vrk::test::made_jpeg(width, height, lines, channels, space, set, [&](jpeg_compress_struct& to) {
    if (!exif.empty()) vrk::test::write_marker(to, JPEG_APP0 + 1, exif);
  });
}

std::string tiff(const samples& all, const tiff_layout& as) {
  const std::string path = testing::TempDir() + "/made." + std::to_string(getpid()) + ".tif";
  vrk::test::make_tiff(path, all, as);
  std::ifstream file(path, std::ios::binary);
  std::filesystem::remove(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Lossless, of R, G, B, A; with a profile and notes, or animated.
std::string webp(const samples& all, const std::string& notes = {}, bool animated = false) {
  const std::string pixels = stored(all);
  WebPData still{}, file{};
  std::uint8_t* encoded = nullptr;
  still.size =
      WebPEncodeLosslessRGBA(reinterpret_cast<const std::uint8_t*>(pixels.data()), width, height, 4 * width, &encoded);
  still.bytes = encoded;
  WebPMux* const mux = WebPMuxNew();
  if (animated) {
    WebPMuxFrameInfo frame{};
    frame.id = WEBP_CHUNK_ANMF;
    frame.duration = 100;
    const WebPMuxAnimParams loop{};
    WebPMuxSetAnimationParams(mux, &loop);
    frame.bitstream = still;
    for (int i = 0; i < 2; ++i) WebPMuxPushFrame(mux, &frame, 1);
  } else {
    WebPMuxSetImage(mux, &still, 1);
  }
  const WebPData block{reinterpret_cast<const std::uint8_t*>(notes.data()), notes.size()};
  const WebPData profile{reinterpret_cast<const std::uint8_t*>("profile"), 7};
  if (!notes.empty()) WebPMuxSetChunk(mux, "EXIF", &block, 1);
  if (!notes.empty()) WebPMuxSetChunk(mux, "ICCP", &profile, 1);
  WebPMuxAssemble(mux, &file);
  const std::string result(file.bytes, file.bytes + file.size);
  WebPDataClear(&file);
  WebPMuxDelete(mux);
  WebPFree(encoded);
  return result;
}

struct picture {
  const char* name;
  std::string file;
  samples expected;
  unsigned tolerance = 0;
};

std::vector<picture> pictures() {
  const samples gray = drawn(1, level), rgb = drawn(3, level);
  const samples gray3 = drawn(3, [](unsigned x, unsigned y, unsigned) { return level(x, y, 0); });
  const samples stripes = drawn(1, [](unsigned x, unsigned, unsigned) { return x % 2 == 0 ? 255 : 0; });
  // 16-bit samples from their two bytes, and from 0 ... 1000.
  const auto wide = [](unsigned x, unsigned y, unsigned byte) { return byte == 0 ? level(x, y, 0) : x; };
  const auto thousand = [](unsigned x, unsigned y, unsigned byte) { return 4 * level(x, y, 0) >> 8 * (1 - byte); };
  // Opaque, a fifth and clear by turns, over white.
  const unsigned shares[] = {255, 51, 0};
  const auto rgba = [&](unsigned x, unsigned y, unsigned c) { return c < 3 ? level(x, y, c) : shares[x % 3]; };
  const auto over_white = [&](unsigned x, unsigned y, unsigned c) {
    return 255 - (255 - level(x, y, c)) * shares[x % 3] / 255;
  };
  const auto palette = [](unsigned x, unsigned y, unsigned c) {
    const unsigned i = level(x, y, 0);
    return c == 0 ? i : c == 1 ? 255 - i : i / 2;
  };
  const std::string pam = "P7\nWIDTH 21\nHEIGHT 13\nDEPTH 4\nMAXVAL 255\nTUPLTYPE CMYK\nENDHDR\n";
  std::string plain_bits, plain_rgb;  // without a blank at the end: every part of it lacks a sample
  for (const unsigned sample : stripes) plain_bits += sample == 0 ? '1' : '0';
  for (const unsigned sample : rgb) plain_rgb += (plain_rgb.empty() ? "" : "\n ") + std::to_string(sample % 4);
  return {
      {"bits.pbm", "P4 21 13\n" + std::string(13 * 3, '\x55'), stripes},
      {"gray.pgm", "P5 21 13 255\n" + stored(gray), gray},
      {"rgb.ppm", "P6\n# a remark\n21 13\n255\n" + stored(rgb), rgb},
      {"thousand.pgm", "P5 21 13 1000\n" + stored(drawn(2, thousand)),
       drawn(1, [](unsigned x, unsigned y, unsigned) { return (4 * level(x, y, 0) * 65535 + 500) / 1000; })},
      {"plain.pbm", "P1 21 13\n# packed\n" + plain_bits, stripes},
      {"plain.ppm", "P3\n21 13 # blanks and remarks anywhere\n3\n" + plain_rgb,
       drawn(3, [&](unsigned x, unsigned y, unsigned c) { return 85 * (level(x, y, c) % 4); })},
      {"cmyk.pam", pam + stored(drawn(4, level)), drawn(4, level)},
      {"gray1.png", png(std::string(13 * 3, '\xAA'), 1, PNG_COLOR_TYPE_GRAY), stripes},
      {"rgb8.png", png(stored(rgb), 8, PNG_COLOR_TYPE_RGB), rgb},
      {"interlaced.png", png(stored(rgb), 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_ADAM7), rgb},
      {"palette.png", png(stored(gray), 8, PNG_COLOR_TYPE_PALETTE), drawn(3, palette)},
      {"gray16.png", png(stored(drawn(2, wide)), 16, PNG_COLOR_TYPE_GRAY),
       drawn(1, [](unsigned x, unsigned y, unsigned) { return level(x, y, 0) << 8 | x; })},
      {"alpha.png", png(stored(drawn(4, rgba)), 8, PNG_COLOR_TYPE_RGBA), drawn(3, over_white), 1},
      {"alpha.webp", webp(drawn(4, rgba)), drawn(3, over_white), 1},
      {"opaque.webp", webp(drawn(4, [](unsigned x, unsigned y, unsigned c) { return c == 3 ? 255 : level(x, y, c); })),
       rgb},
      {"gray.jpg", jpeg(stored(gray), 1, JCS_GRAYSCALE), gray, 8},
      {"rgb.jpg", jpeg(stored(gray3), 3, JCS_RGB), gray3, 12},
      {"progressive.jpg", jpeg(stored(gray3), 3, JCS_RGB, true), gray3, 12},
      {"cmyk.jpg", jpeg(stored(drawn(4, level)), 4, JCS_CMYK),  // with the marker of inverted samples
       drawn(4, [](unsigned x, unsigned y, unsigned c) { return 255 - level(x, y, c); }), 8},
  };
}

// Every way to lie in a file, and every kind of sample, in some combination.
std::vector<picture> tiffs() {
  const auto fours = [](unsigned x, unsigned y, unsigned c) { return level(x, y, c) / 64; };
  const auto bits = [](unsigned x, unsigned y, unsigned c) { return level(x, y, c) / 50 % 2; };
  const auto times = [](unsigned by, const auto& at) {
    return [=](unsigned x, unsigned y, unsigned c) { return by * at(x, y, c); };
  };
  const auto wide = [](unsigned x, unsigned y, unsigned c) { return 256 * level(x, y, c) + x; };
  // A third and all by turns, over white; the colours as such, or times the share.
  const auto share = [](unsigned x) { return x % 2 == 0 ? 85 : 255; };
  const auto apart = [=](unsigned x, unsigned y, unsigned c) { return c == 3 ? share(x) : level(x, y, c); };
  const auto multiplied = [=](unsigned x, unsigned y, unsigned c) {
    return c == 3 ? share(x) : level(x, y, c) * share(x) / 255;
  };
  const auto over_white = [=](unsigned x, unsigned y, unsigned c) {
    return 255 - (255 - level(x, y, c)) * share(x) / 255;
  };
  const auto ink_apart = [=](unsigned x, unsigned y, unsigned c) { return c == 4 ? share(x) : level(x, y, c); };
  const auto ink_over_white = [=](unsigned x, unsigned y, unsigned c) { return level(x, y, c) * share(x) / 255; };
  const auto palette_note = [](TIFF* to) {
    std::uint16_t colors[3][4];
    for (unsigned i = 0; i < 12; ++i) colors[i / 4][i % 4] = std::uint16_t(257 * 20 * i);
    TIFFSetField(to, TIFFTAG_COLORMAP, colors[0], colors[1], colors[2]);
  };
  const auto extra = [](std::uint16_t kind) {
    return [=](TIFF* to) { TIFFSetField(to, TIFFTAG_EXTRASAMPLES, 1, &kind); };
  };
  const auto predicted = [](TIFF* to) { TIFFSetField(to, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL); };
  const auto smooth_jpeg = [](TIFF* to) {
    TIFFSetField(to, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    TIFFSetField(to, TIFFTAG_JPEGQUALITY, 100);
  };
  const samples gray3 = drawn(3, [](unsigned x, unsigned y, unsigned) { return level(x, y, 0); });
  constexpr unsigned w = width, h = height;
  const auto inverted = [](const auto& at) {
    return [=](unsigned x, unsigned y, unsigned c) { return 255 - at(x, y, c); };
  };
  return {
      {"fax.tif", tiff(drawn(1, bits), {w, h, 1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTFAX4}),
       drawn(1, inverted(times(255, bits)))},
      {"gray2.tif", tiff(drawn(1, fours), {w, h, 1, 2, PHOTOMETRIC_MINISBLACK, COMPRESSION_PACKBITS}),
       drawn(1, times(85, fours))},
      {"rgb4.tif", tiff(drawn(3, fours), {w, h, 3, 4, PHOTOMETRIC_RGB, COMPRESSION_LZW, 13}),
       drawn(3, times(17, fours))},
      {"planes.tif", tiff(drawn(3, level), {w, h, 3, 8, PHOTOMETRIC_RGB, COMPRESSION_ADOBE_DEFLATE, 4, 0, true, "wb"}),
       drawn(3, level)},
      {"tiles.tif", tiff(drawn(3, level), {w, h, 3, 8, PHOTOMETRIC_RGB, COMPRESSION_LZW, 0, 16, false, "w", predicted}),
       drawn(3, level)},
      {"wide.tif", tiff(drawn(3, wide), {w, h, 3, 16, PHOTOMETRIC_RGB, COMPRESSION_NONE, 5, 0, false, "wb8"}),
       drawn(3, wide)},
      {"cmyk_bits.tif", tiff(drawn(4, bits), {w, h, 4, 1, PHOTOMETRIC_SEPARATED, COMPRESSION_PACKBITS, 0, 16, true}),
       drawn(4, times(255, bits))},
      {"palette.tif",
       tiff(drawn(1, fours), {w, h, 1, 2, PHOTOMETRIC_PALETTE, COMPRESSION_NONE, 5, 0, false, "wl", palette_note}),
       drawn(3, [&](unsigned x, unsigned y, unsigned c) { return 20 * (4 * c + fours(x, y, 0)); })},
      {"apart.tif",
       tiff(drawn(4, apart),
            {w, h, 4, 8, PHOTOMETRIC_RGB, COMPRESSION_NONE, 5, 0, true, "w", extra(EXTRASAMPLE_UNASSALPHA)}),
       drawn(3, over_white), 1},
      {"multiplied.tif",
       tiff(drawn(4, multiplied),
            {w, h, 4, 8, PHOTOMETRIC_RGB, COMPRESSION_NONE, 5, 0, false, "w", extra(EXTRASAMPLE_ASSOCALPHA)}),
       drawn(3, over_white), 1},
      {"spot.tif",
       tiff(drawn(4, apart),
            {w, h, 4, 8, PHOTOMETRIC_RGB, COMPRESSION_NONE, 5, 0, true, "w", extra(EXTRASAMPLE_UNSPECIFIED)}),
       drawn(3, level)},
      {"inks.tif",
       tiff(drawn(5, ink_apart),
            {w, h, 5, 8, PHOTOMETRIC_SEPARATED, COMPRESSION_NONE, 5, 0, false, "w", extra(EXTRASAMPLE_UNASSALPHA)}),
       drawn(4, ink_over_white), 1},
      {"jpeg.tif", tiff(gray3, {w, h, 3, 8, PHOTOMETRIC_YCBCR, COMPRESSION_JPEG, 16, 0, false, "w", smooth_jpeg}),
       gray3, 12},
  };
}

std::vector<picture> all_pictures() {
  std::vector<picture> all = pictures();
  for (picture& p : tiffs()) all.push_back(std::move(p));
  return all;
}

samples read_all(const std::string& path) {
  const auto image = open_image(path);
  EXPECT_EQ(image->width(), width);
  EXPECT_EQ(image->height(), height);
  std::vector<std::uint8_t> bytes(image->line_bytes() * height);
  for (unsigned y = 0; y < height; ++y) image->read_line(&bytes[y * image->line_bytes()]);
  return vrk::test::unpacked(bytes, image->bits() == 16);
}

TEST_F(image, reads_every_format) {
  for (const picture& p : all_pictures()) {
    const samples read = read_all(save(p.name, p.file));
    ASSERT_EQ(read.size(), p.expected.size()) << p.name;
    for (std::size_t i = 0; i < read.size(); ++i) ASSERT_NEAR(read[i], p.expected[i], p.tolerance) << p.name << i;
  }
}

TEST_F(image, knows_its_size_on_paper_and_which_way_up_it_is) {
  const std::string gray = stored(drawn(1, level)), lead("Exif\0\0", 6);
  const auto png_with = [&](const std::string& notes, unsigned per_metre) {
    return png(gray, 8, PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE, [&](png_structp to, png_infop info) {
      std::string block = notes;
      if (!notes.empty()) png_set_eXIf_1(to, info, unsigned(block.size()), reinterpret_cast<png_bytep>(block.data()));
      if (per_metre != 0) png_set_pHYs(to, info, per_metre, per_metre / 2, PNG_RESOLUTION_METER);
    });
  };
  const auto jpeg_with = [&](int unit, const std::string& notes) {
    return jpeg(gray, 1, JCS_GRAYSCALE, false, unit, notes);
  };
  const auto tiff_with = [&](std::uint16_t unit, float dots, std::uint16_t seen) {
    return tiff(drawn(1, level),
                {width, height, 1, 8, PHOTOMETRIC_MINISBLACK, COMPRESSION_NONE, 5, 0, false, "w", [=](TIFF* to) {
                   TIFFSetField(to, TIFFTAG_RESOLUTIONUNIT, unit);
                   TIFFSetField(to, TIFFTAG_XRESOLUTION, dots);
                   TIFFSetField(to, TIFFTAG_YRESOLUTION, dots / 2);
                   TIFFSetField(to, TIFFTAG_ORIENTATION, seen);
                   TIFFSetField(to, TIFFTAG_ICCPROFILE, 7, "profile");
                 }});
  };
  const auto late = [](std::string file) {  // the note behind the picture
    const std::size_t at = file.find("eXIf") - 4, bytes = 12 + std::size_t(file[at + 3]);
    const std::string chunk = file.substr(at, bytes);
    return file.erase(at, bytes).insert(file.size() - 12, chunk);
  };
  constexpr double cm = 2.54;
  const struct {
    const char* name;
    std::string file;
    double across;  // dpi, down half as many; 0: not known
    unsigned seen = 1;
  } cases[] = {{"nothing.jpg", jpeg_with(0, {}), 0},
               {"inch.jpg", jpeg_with(1, {}), 100},
               {"cm.jpg", jpeg_with(2, {}), 100 * cm},
               {"exif.jpg", jpeg_with(0, lead + exif(6, 300, 2)), 300, 6},
               {"exif_cm.jpg", jpeg_with(0, lead + exif(3, 40, 3)), 40 * cm, 3},
               {"both.jpg", jpeg_with(1, lead + exif(8, 300, 2)), 100, 8},
               {"wild.jpg", jpeg_with(0, lead + exif(9, 0, 7)), 0},
               {"cut.jpg", jpeg_with(0, lead + exif(6, 300, 2).substr(0, 30)), 0, 6},
               {"other.jpg", jpeg_with(0, "http://a note of another kind"), 0},
               {"nothing.png", png_with({}, 0), 0},
               {"metre.png", png_with({}, 10000), 254},
               {"exif.png", png_with(exif(5, 300, 2), 0), 300, 5},
               {"both.png", png_with(exif(7, 300, 2), 10000), 254, 7},
               {"exif.webp", webp(drawn(4, level), exif(6, 300, 2)), 300, 6},
               {"lead.webp", webp(drawn(4, level), lead + exif(6, 300, 2)), 300, 6},
               {"late.png", late(png_with(exif(6, 300, 2), 0)), 300, 6},
               {"inch.tif", tiff_with(RESUNIT_INCH, 300, 6), 300, 6},
               {"cm.tif", tiff_with(RESUNIT_CENTIMETER, 100, 3), 100 * cm, 3},
               {"none.tif", tiff_with(RESUNIT_NONE, 1, 1), 0}};
  for (const auto& c : cases) {
    const auto read = open_image(save(c.name, c.file));
    const resolution dpi = read->dpi().value_or(resolution{0, 0});
    EXPECT_NEAR(dpi.x, c.across, 1e-6) << c.name;
    EXPECT_NEAR(dpi.y, c.across / 2, 1e-6) << c.name;
    EXPECT_EQ(read->seen(), exif_orientation(c.seen)) << c.name;
  }
  for (const char* const file : {"cm.tif", "exif.webp"}) {
    const vrk::kit::bytes profile = open_image(path(file))->profile();
    EXPECT_EQ(std::string(profile.begin(), profile.end()), "profile") << file;
  }
}

TEST_F(image, every_part_of_a_picture_is_refused_by_name) {
  for (const picture& p : all_pictures()) {
    for (std::size_t cut = 0; cut < p.file.size(); cut += cut < 64 || cut + 16 > p.file.size() ? 1 : 7) {
      const std::string part = save("part", p.file.substr(0, cut));
      const std::string said = complaint([&] { read_all(part); });
      ASSERT_EQ(said.find(part + ": "), 0u) << p.name << " cut at " << cut << " says: " << said;
      ASSERT_GT(said.size(), part.size() + 4) << p.name << " cut at " << cut;
    }
  }
}

TEST_F(image, says_what_a_picture_is_when_it_cannot_be_read) {
  const std::string rgba = "P7\nWIDTH 1\nHEIGHT 1\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n";
  const auto tiff_of = [&](const std::string& name, std::uint16_t kind, unsigned bits, auto note) {
    return save(name, tiff(samples(21 * 13), {width, height, 1, bits, kind, COMPRESSION_NONE, 5, 0, false, "w", note}));
  };
  const auto floating = [](TIFF* to) { TIFFSetField(to, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP); };
  const auto copy = [](TIFF* to) { TIFFSetField(to, TIFFTAG_SUBFILETYPE, FILETYPE_REDUCEDIMAGE); };
  const auto spots = [](TIFF* to) { TIFFSetField(to, TIFFTAG_INKSET, INKSET_MULTIINK); };
  const std::string two = tiff_of("two.tif", PHOTOMETRIC_MINISBLACK, 8, copy);
  for (unsigned i = 0; i < 2; ++i) {
    vrk::test::make_tiff(two, samples(21 * 13),
                         {width, height, 1, 8, PHOTOMETRIC_MINISBLACK, COMPRESSION_NONE, 5, 0, false, "a"});
    EXPECT_EQ(complaint([&] { read_all(two); }).empty(), i == 0);
  }
  const struct {
    std::string file, said;
  } cases[] = {{two, "holds more than one picture"},
               {tiff_of("copy.tif", PHOTOMETRIC_MINISBLACK, 8, copy), "only a smaller copy"},
               {tiff_of("float.tif", PHOTOMETRIC_MINISBLACK, 16, floating), "no whole numbers"},
               {tiff_of("lab.tif", PHOTOMETRIC_CIELAB, 8, nullptr), "its PhotometricInterpretation is 8"},
               {tiff_of("rgb.tif", PHOTOMETRIC_RGB, 8, nullptr), "has 1 samples a pixel, expected 3"},
               {tiff_of("spots.tif", PHOTOMETRIC_SEPARATED, 8, spots), "inks of its own"},
               {save("minutes.txt", std::string("Minutes of a meeting")), "neither PNG, JPEG, TIFF, WebP nor PNM"},
               {save("moving.webp", webp(samples(4 * 21 * 13), {}, true)), "is animated"},
               {save("alpha.pam", rgba + "rgba"), "holds neither gray, RGB nor CMYK"},
               {save("empty.png", std::string()), "is empty"},
               {save("letter.txt", std::string("Dear Sir")), "neither PNG, JPEG, TIFF, WebP nor PNM"},
               {save("zero.ppm", std::string("P6 0 5 255\n")), "has 0 x 5 pixels"},
               {save("deep.pgm", std::string("P5 1 1 65536\n")), "has samples up to 65536"},
               {save("wide.pgm", std::string("P5 4294967297 1 255\n")), "pixels, expected 1 to"},
               {save("text.ppm", std::string("P3 1 one 255\n")), "something other than a number"},
               {save("above.pgm", std::string("P2 1 1 7\n8\n")), "has a sample of 8, expected 0 to 7"},
               {save("bits.pbm", std::string("P1 1 1\n2\n")), "something other than 0 and 1"},
               {save("two.pgm", std::string("P5 1 1 255\n.P5 1 1 255\n.")), "holds more than one picture"},
               {save("two.pbm", std::string("P1 1 1 1\nP1 1 1 1\n")), "holds more than one picture"},
               {save("long.ppm", std::string("P6 1 1 255\nrgb\nrgb")), "goes on behind its picture"},
               {save("header.pam", "P7\n" + std::string(2000, 'W')), "has more than 1000 characters"},
               {save("form.pnm", std::string("P8 1 1\n")), "expected \"P1\" to \"P7\""},
               {path("missing.png"), "No such file"},
               {dir_.string(), "is a directory"}};
  for (const auto& c : cases) {
    std::uint8_t line[8];
    const std::string said = complaint([&] { open_image(c.file)->read_line(line); });
    EXPECT_EQ(said.find(c.file + ": "), 0u) << said;
    EXPECT_NE(said.find(c.said), std::string::npos) << said;
  }
}

// What its header promises is not believed before there is memory for it.
TEST_F(image, that_needs_too_much_memory_is_refused) {
  std::string interlaced = png(stored(drawn(3, level)), 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_ADAM7);
  const std::string small = save("small.png", interlaced),
                    scans = save("scans.jpg", jpeg(stored(drawn(3, level)), 3, JCS_RGB, true));
  const std::size_t width_field = 16;
  interlaced.replace(width_field, 8, std::string("\x00\x0F\x00\x00\x00\x0F\x00\x00", 8));
  const uLong sum = crc32(0, reinterpret_cast<const Bytef*>(&interlaced[12]), 17);
  for (unsigned i = 0; i < 4; ++i) interlaced[29 + i] = char(sum >> (24 - 8 * i));
  EXPECT_EQ(complaint([&] { open_image(save("large.png", interlaced)); }),
            path("large.png") +
                ": is interlaced and so needs 2764808 MB of memory, more than the 1024 MB of "
                "--max-memory");
  const std::string noted =
      png(stored(drawn(3, level)), 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, [](auto to, auto info) {
        std::string block(2 << 20, 'n');
        png_set_eXIf_1(to, info, unsigned(block.size()), reinterpret_cast<png_bytep>(block.data()));
      });
  EXPECT_NE(complaint([&] { open_image(save("noted.png", noted), 1 << 20); }).find("more than --max-memory"),
            std::string::npos);
  const tiff_layout tiles{width, height, 3, 8, PHOTOMETRIC_RGB, COMPRESSION_NONE, 0, 64, true};
  const std::string planes = save("planes.tif", tiff(drawn(3, level), tiles));
  const std::string whole = save("whole.webp", webp(drawn(4, level)));
  const auto whole_bytes = int(std::filesystem::file_size(whole)) + (4 + 4) * 21 * 13;
  for (const auto& [file, needed] : {std::pair{small, 21 * 13 * 3 + 13 * 8},
                                     {scans, (3 * 2 + 2 * 1 * 2) * 128},
                                     {planes, (3 + 1) * 64 * 64},
                                     {whole, whole_bytes}}) {
    EXPECT_EQ(complaint([&, file = file, needed = needed] { open_image(file, unsigned(needed)); }), "");
    EXPECT_NE(complaint([&, file = file, needed = needed] { open_image(file, unsigned(needed) - 1); }), "") << file;
  }
}

}  // namespace
