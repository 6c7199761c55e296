// Pictures that the program reads: every format, whole and cut short.
#include <gtest/gtest.h>
#include <jpeglib.h>
#include <png.h>

#include <functional>

#include "tests/scratch.h"
#include "tools/image_reader.h"

namespace {

using namespace vrk::tool;
using vrk::test::complaint;

struct image : vrk::test::scratch {};

constexpr unsigned width = 21, height = 13;

// The test picture: smooth, in colour, nothing alike in two channels. 0 ... 255.
unsigned sample(unsigned x, unsigned y, unsigned channel) {
  return (5 * x + 9 * y + 60 * channel) % 220 + 20 * (channel == 2);
}

// Writes a PNG with libpng; `row` fills one row as the file stores it.
void write_png(const std::string& path, int depth, int type, bool interlaced,
               const std::function<void(unsigned y, std::uint8_t* row)>& row) {
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_init_io(png, file);
  png_set_IHDR(png, info, width, height, depth, type, interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, 0, 0);
  png_color palette[256];
  for (int i = 0; i < 256; ++i) palette[i] = {png_byte(i), png_byte(255 - i), png_byte(i / 2)};
  if (type == PNG_COLOR_TYPE_PALETTE) png_set_PLTE(png, info, palette, 256);
  std::vector<std::vector<std::uint8_t>> rows(height, std::vector<std::uint8_t>(width * 8));
  std::vector<std::uint8_t*> pointers;
  for (unsigned y = 0; y < height; ++y) {
    row(y, rows[y].data());
    pointers.push_back(rows[y].data());
  }
  png_write_info(png, info);
  png_write_image(png, pointers.data());
  png_write_end(png, info);
  png_destroy_write_struct(&png, &info);
  std::fclose(file);
}

void write_jpeg(const std::string& path, int channels, J_COLOR_SPACE space, bool progressive = false) {
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  jpeg_error_mgr errors;
  jpeg_compress_struct jpeg;
  jpeg.err = jpeg_std_error(&errors);
  jpeg_create_compress(&jpeg);
  jpeg_stdio_dest(&jpeg, file);
  jpeg.image_width = width;
  jpeg.image_height = height;
  jpeg.input_components = channels;
  jpeg.in_color_space = space;
  jpeg_set_defaults(&jpeg);
  jpeg_set_quality(&jpeg, 100, TRUE);
  if (progressive) jpeg_simple_progression(&jpeg);
  jpeg_start_compress(&jpeg, TRUE);
  for (unsigned y = 0; y < height; ++y) {
    std::vector<JSAMPLE> row;
    for (unsigned x = 0; x < width; ++x) {
      for (int c = 0; c < channels; ++c) row.push_back(JSAMPLE(sample(x, y, 0)));
    }
    JSAMPROW line = row.data();
    jpeg_write_scanlines(&jpeg, &line, 1);
  }
  jpeg_finish_compress(&jpeg);
  jpeg_destroy_compress(&jpeg);
  std::fclose(file);
}

std::string pnm(const std::string& header, unsigned channels) {
  std::string out = header;
  for (unsigned y = 0; y < height; ++y) {
    for (unsigned x = 0; x < width; ++x) {
      for (unsigned c = 0; c < channels; ++c) out += char(sample(x, y, c));
    }
  }
  return out;
}

// Reads a whole picture; samples as numbers.
std::vector<unsigned> read_all(const std::string& path) {
  const auto image = open_image(path);
  EXPECT_EQ(image->width(), width);
  EXPECT_EQ(image->height(), height);
  std::vector<unsigned> samples;
  std::vector<std::uint8_t> line(image->line_bytes());
  for (unsigned y = 0; y < image->height(); ++y) {
    image->read_line(line.data());
    if (image->bits() == 8) samples.insert(samples.end(), line.begin(), line.end());
    if (image->bits() == 16) {
      for (std::size_t i = 0; i < line.size(); i += 2) samples.push_back(*reinterpret_cast<std::uint16_t*>(&line[i]));
    }
  }
  return samples;
}

std::vector<unsigned> expected(unsigned channels,
                               const std::function<unsigned(unsigned x, unsigned y, unsigned c)>& at) {
  std::vector<unsigned> all;
  for (unsigned y = 0; y < height; ++y) {
    for (unsigned x = 0; x < width; ++x) {
      for (unsigned c = 0; c < channels; ++c) all.push_back(at(x, y, c));
    }
  }
  return all;
}

struct picture {
  const char* name;
  std::function<void(const std::string& path)> write;
  std::vector<unsigned> samples;
  unsigned tolerance = 0;
};

void keep(const std::string& path, const std::string& data) { std::ofstream(path, std::ios::binary) << data; }

std::vector<picture> pictures() {
  const auto gray = expected(1, [](unsigned x, unsigned y, unsigned) { return sample(x, y, 0); });
  const auto rgb = expected(3, sample);
  const auto each = [](auto fill) {  // a row filled byte by byte
    return [fill](unsigned y, std::uint8_t* row) { fill(y, row); };
  };
  const auto bytes_of = [](unsigned channels) {
    return [channels](unsigned y, std::uint8_t* row) {
      for (unsigned i = 0; i < width * channels; ++i) row[i] = std::uint8_t(sample(i / channels, y, i % channels));
    };
  };
  return {
      {"bits.pbm", [](auto& path) { keep(path, "P4 21 13\n" + std::string(13 * 3, '\x55')); },
       expected(1, [](unsigned x, unsigned, unsigned) { return x % 2 == 0 ? 255u : 0u; })},
      {"gray.pgm", [](auto& path) { keep(path, pnm("P5 21 13 255\n", 1)); }, gray},
      {"rgb.ppm", [](auto& path) { keep(path, pnm("P6\n# a remark\n21 13\n255\n", 3)); }, rgb},
      {"plain.pgm",
       [](auto& path) {
         std::string text = "P2 21 13 1000\n";
         for (unsigned i = 0; i < width * height; ++i) text += std::to_string(4 * (i % 250)) + "\n";
         keep(path, text);
       },
       expected(1,
                [](unsigned x, unsigned y, unsigned) { return (4 * ((y * width + x) % 250) * 65535 + 500) / 1000; })},
      {"gray1.png",
       [&](auto& path) {
         write_png(path, 1, PNG_COLOR_TYPE_GRAY, false,
                   each([](unsigned, std::uint8_t* row) { row[0] = row[1] = row[2] = 0xAA; }));
       },
       expected(1, [](unsigned x, unsigned, unsigned) { return x % 2 == 0 ? 255u : 0u; })},
      {"rgb8.png", [&](auto& path) { write_png(path, 8, PNG_COLOR_TYPE_RGB, false, bytes_of(3)); }, rgb},
      {"interlaced.png", [&](auto& path) { write_png(path, 8, PNG_COLOR_TYPE_RGB, true, bytes_of(3)); }, rgb},
      {"palette.png", [&](auto& path) { write_png(path, 8, PNG_COLOR_TYPE_PALETTE, false, bytes_of(1)); },
       expected(3,
                [](unsigned x, unsigned y, unsigned c) {
                  const unsigned i = sample(x, y, 0);
                  return c == 0 ? i : c == 1 ? 255 - i : i / 2;
                })},
      {"gray16.png",
       [&](auto& path) {
         write_png(path, 16, PNG_COLOR_TYPE_GRAY, false, each([](unsigned y, std::uint8_t* row) {
                     for (unsigned x = 0; x < width; ++x)
                       row[2 * x] = std::uint8_t(sample(x, y, 0)), row[2 * x + 1] = std::uint8_t(x);
                   }));
       },
       expected(1, [](unsigned x, unsigned y, unsigned) { return sample(x, y, 0) << 8 | x; })},
      {"alpha.png",  // over white; opaque, half and clear by turns
       [&](auto& path) {
         write_png(path, 8, PNG_COLOR_TYPE_RGBA, false, each([](unsigned y, std::uint8_t* row) {
                     for (unsigned x = 0; x < width; ++x) {
                       for (unsigned c = 0; c < 3; ++c) *row++ = std::uint8_t(sample(x, y, c));
                       *row++ = std::uint8_t(x % 3 == 0 ? 255 : x % 3 == 1 ? 51 : 0);
                     }
                   }));
       },
       expected(3,
                [](unsigned x, unsigned y, unsigned c) {
                  return x % 3 == 0 ? sample(x, y, c) : x % 3 == 1 ? (sample(x, y, c) + 4 * 255 + 2) / 5 : 255u;
                }),
       1},
      {"gray.jpg", [](auto& path) { write_jpeg(path, 1, JCS_GRAYSCALE); }, gray, 8},
      {"rgb.jpg", [](auto& path) { write_jpeg(path, 3, JCS_RGB); },
       expected(3, [](unsigned x, unsigned y, unsigned) { return sample(x, y, 0); }), 12},
      {"cmyk.jpg", [](auto& path) { write_jpeg(path, 4, JCS_CMYK); },  // with the marker of inverted samples
       expected(4, [](unsigned x, unsigned y, unsigned) { return 255 - sample(x, y, 0); }), 8},
      {"cmyk.pam",
       [](auto& path) { keep(path, pnm("P7\nWIDTH 21\nHEIGHT 13\nDEPTH 4\nMAXVAL 255\nTUPLTYPE CMYK\nENDHDR\n", 4)); },
       expected(4, sample)},
  };
}

TEST_F(image, reads_every_format) {
  for (const picture& p : pictures()) {
    p.write(path(p.name));
    const std::vector<unsigned> samples = read_all(path(p.name));
    ASSERT_EQ(samples.size(), p.samples.size()) << p.name;
    for (std::size_t i = 0; i < samples.size(); ++i)
      ASSERT_NEAR(samples[i], p.samples[i], p.tolerance) << p.name << " " << i;
  }
}

TEST_F(image, every_part_of_a_picture_is_refused_by_name) {
  for (const picture& p : pictures()) {
    if (std::string_view(p.name) == "plain.pgm") continue;  // a plain file cut inside its last number is a whole one
    p.write(path(p.name));
    const std::string whole = load(path(p.name));
    for (std::size_t cut = 0; cut < whole.size(); cut += cut < 64 || cut + 16 > whole.size() ? 1 : 7) {
      const std::string part = save("part", whole.substr(0, cut));
      const std::string said = complaint([&] { read_all(part); });
      ASSERT_EQ(said.find(part + ": "), 0u) << p.name << " cut at " << cut << " says: " << said;
      ASSERT_GT(said.size(), part.size() + 4) << p.name << " cut at " << cut;
    }
  }
}

TEST_F(image, says_what_a_picture_is_when_it_cannot_be_read) {
  const struct {
    std::string file, said;
  } cases[] = {{save("alpha.pam", pnm("P7\nWIDTH 21\nHEIGHT 13\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n", 4)),
                "holds neither gray, RGB nor CMYK"},
               {save("empty.png", std::string()), "is empty"},
               {save("letter.txt", std::string("Dear Sir")), "neither PNG, JPEG nor PNM"},
               {save("zero.ppm", std::string("P6 0 5 255\n")), ""},
               {path("missing.png"), "No such file"},
               {dir_.string(), "is a directory"}};
  for (const auto& c : cases) {
    const std::string said = complaint([&] { open_image(c.file); });
    EXPECT_EQ(said.find(c.file + ": "), 0u) << said;
    EXPECT_NE(said.find(c.said), std::string::npos) << said;
  }
}

}  // namespace
