// Writes the inputs that fuzzing begins with, by the kit's encoders: tables that the library takes, of every form.
// usage: vrk_seeds DIR, below which every target has a folder
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/input.h"
#include "kit/blob.h"
#include "kit/color_grids.h"
#include "kit/presets.h"
#include "kit/tone_curves.h"

namespace {

using namespace vrk::fuzz;
namespace kit = vrk::kit;

std::filesystem::path root;
unsigned written = 0;

void write(const char* target, std::initializer_list<byte_span> sections) {
  const std::filesystem::path folder = root / target;
  std::filesystem::create_directories(folder);
  const bytes all = joined(sections);
  std::ofstream(folder / ("seed-" + std::to_string(written++)), std::ios::binary)
      .write(reinterpret_cast<const char*>(all.data()), std::streamsize(all.size()));
}

const bytes pixels{0, 255, 128, 1, 254, 64, 0, 0, 0, 255, 255, 255, 17, 99, 200, 3, 127};

// The header of a curve image and a few entries.
bytes curve(unsigned curves, const char* version, unsigned output_count) {
  const bytes image =
      kit::curve_image{
          .version = version, .output_count = output_count, .curves = std::vector(curves, kit::gamma_curve(2))}
          .encode();
  return {image.begin(), image.begin() + 40};
}

void write_curves() {
  for (const std::uint8_t flags : bytes{0x00, 0x04, 0x10, 0x24, 0x05, 0x01, 0x21, 0x35}) {
    const bytes one = curve(1, "0010", 0), three = curve(3, "0010", 0);
    for (const std::uint8_t on : bytes{0, 1, 2, 4, 7}) {
      const bytes numbers{flags, 0, 0,  0,  on, on, std::uint8_t(on * 3), std::uint8_t(on % 4), 3, 1, 0, 255, 255, 2,
                          0,     7, 40, 63, 1,  2};
      write("preproc", {numbers, one, three, pixels}), write("preproc2", {numbers, one, three, pixels});
    }
    for (std::uint8_t place = 0; place < 12; ++place) {
      const bytes numbers{place, flags, 0, 0, 0, 9, std::uint8_t(place % 2 == 0 ? 4 : 1), 40, 63, 1, 2};
      write("curves", {numbers, place == 5 ? curve(4, "0020", 6) : place == 1 || place == 3 ? three : one, pixels});
    }
    for (const std::uint8_t planes : bytes{1, 4, 6}) {
      for (const char* version : {"0010", "0020"}) {
        const bytes numbers{flags, 0, 0, 0, planes, std::uint8_t(version[2] == '1' ? 127 : 15), 5, 2, 60, 63, 1, 2};
        write("postproc", {numbers, pixels, curve(planes, version, planes == 4 ? 6 : 0), one});
        const bytes without{flags, 0, 0, 0, planes, 84, 5, 2, 60, 63, 1, 2};
        write("postproc", {without, pixels, one, one});
      }
    }
    const bytes samples{1, 2, 3, 4, 200, 100, 50};
    for (const std::uint8_t on : bytes{0, 1}) write("rows", {bytes{2, flags, 0, on, 210, 1}, samples, pixels});
  }
}

void write_grid(const kit::color_table& table, std::uint8_t flags) {
  const bytes image = table.encode();
  const bool first = table.grid.channels == 3;
  const std::uint8_t prec12 = (flags & 0x15) != 0;
  for (const std::uint8_t layout : bytes{0, 2, 3}) {
    const bytes numbers{flags, 0, 0, 0, layout, 3, 1, 3, 70, 63, 1, 2, 3};
    if (first) {
      write("csc1", {bytes{flags, 0, 0, 0, layout, 3, 1, 70, 63, 1, 2, 3}, image, pixels});
    } else {
      write("csc2", {numbers, image, pixels});
    }
    write("rows", {bytes{std::uint8_t(first ? 0 : 1), flags, 0, layout, layout, 210, 1}, image, pixels});
  }
  if (!first) write("csc2", {bytes{flags, 0, 0, 0, 0, 3, 1, 1, 253, 63, 1, 2, 3}, image, pixels});
  write("explain", {bytes{std::uint8_t(first ? 0 : 1), prec12}, image});
}

void write_grids() {
  for (const std::uint8_t flags : bytes{0x00, 0x10, 0x04, 0x05, 0x01}) {
    for (const unsigned points : {2u, 3u}) {
      for (const auto encoding : {kit::grid_encoding::raw16, kit::grid_encoding::packed12, kit::grid_encoding::packed10,
                                  kit::grid_encoding::raw8, kit::grid_encoding::delta8, kit::grid_encoding::delta10}) {
        if (encoding != kit::grid_encoding::delta10) {
          write_grid({.encoding = encoding, .grid = kit::identity_grid(points)}, flags);
        }
        if (encoding == kit::grid_encoding::delta8) continue;
        for (const unsigned inks : {4u, 6u}) {
          for (const unsigned unused : {0u, 1u}) {
            kit::color_table table = kit::ink_table(inks, points, encoding);
            table.delta_codes_unused = unused;
            if (unused == 0 || encoding == kit::grid_encoding::delta10) write_grid(table, flags);
          }
        }
      }
    }
    for (const char* rule : {"thrh", "gray", "blck", "sold"}) {
      const bytes image = kit::subtype_table(rule);
      write("csc1", {bytes{flags, 0, 0, 0, 1, 3, 0, 70, 63, 1, 2, 3}, image, pixels});
      write("csc1", {bytes{std::uint8_t(flags | 0x40), 0, 0, 0, 3, 3, 0, 70, 63, 1, 2, 3}, image, pixels});
      write("rows", {bytes{0, flags, 0, 1, 210, 1}, image, pixels});
      write("explain", {bytes{0, 0}, image});
    }
    const bytes image = kit::black_ink_curve().encode();
    write("csc2", {bytes{flags, 0, 0, 0, 0, 3, 0, 1, 70, 63, 1, 2, 3}, image, pixels});
  }
}

void write_halftones() {
  kit::modulation tiny{.width = 3};
  tiny.planes.fill({1, 0, -1});
  kit::edtb_table few = kit::ed_distribution("shiau-fan");
  const bytes spread = few.encode();
  few.rows.resize(3);
  const bytes short_spread = few.encode();
  for (const std::uint8_t flags : bytes{0x00, 0x10, 0x01, 0x80}) {
    for (const unsigned planes : {1u, 4u, 6u}) {
      for (const unsigned levels : {2u, 3u, 5u, 6u, 16u}) {
        const bytes edpr = kit::ed_parameters(planes, levels, tiny).encode();
        const bytes cells = kit::cell_parameters(planes, levels == 2 ? 1 : 4, levels == 2 ? 1 : 4, levels).encode();
        const bytes numbers{flags, 1, 0, 0,   0, 1, 0, 0,  4, 13, 40,  128, 0,
                            0,     4, 5, 134, 2, 0, 5, 30, 7, 44, 132, 3,   12};
        const bytes& rows = levels % 2 == 0 ? spread : short_spread;
        write("ed", {numbers, edpr, rows, pixels});
        write("rows", {bytes{4, flags, 1, 33, 0, 1, 3, 1, 0, 1}, edpr, spread, pixels});
        if (flags == 0) {
          write("ed", {numbers, cells, short_spread, pixels});
          write("rows", {bytes{4, flags, 1, 33, 0, 1, 3, 1, 0, 1}, cells, rows, pixels});
          write("explain", {bytes{2, flags}, edpr, short_spread}),
              write("explain", {bytes{2, flags}, cells, short_spread});
          write("explain", {bytes{3, flags}, short_spread, edpr});
        }
        if (levels == 5) continue;
        const bytes dith = kit::dither_parameters(planes, levels, "bayer4", (flags & 1) != 0).encode();
        const bytes calls{flags, 1, 0, 0, 5, 5, 70, 128, 0, 0, 4, 5, 134, 0, 20, 9, 0, 12, 13};
        write("dither", {calls, dith, pixels});
        write("rows", {bytes{3, flags, 1, 200, 1, 5, 7}, dith, pixels});
        write("explain", {bytes{4, flags}, dith});
      }
    }
  }
}

void write_blobs() {
  const bytes data{1, 2, 3};
  struct kind {
    std::uint8_t function;
    const char* type;
    std::vector<const char*> tags;
    std::uint8_t a, b;
  };
  const kind kinds[] = {{0, "CS1T", {"HT", "HP", "HSP", "HC", "HG", "HBK", "XP"}, 1, 0},
                        {1, "CS2T", {"HN", "HNP", "HPP", "HPG", "HS", "XNG", "XN"}, 1, 1},
                        {2, "HATT", {"HH1", "HH4", "HH6", "XH4"}, 4, 0},
                        {3, "INGM", {"HD2", "HT", "HB1"}, 0, 0},
                        {4, "INGM", {"HB-5", "HB00", "HB+5"}, 5, 0},
                        {5, "OTGM", {"HN", "XN"}, 0, 0},
                        {6, "HRKT", {"HK+2", "HR+2", "HM-9"}, 2, 0}};
  for (const kind& k : kinds) {
    for (const char class_code : {' ', 'C'}) {
      kit::blob made{.type = k.type, .class_code = class_code};
      for (const char* tag : k.tags) made.entries.push_back({.tag = tag, .data = data});
      const bytes image = made.encode();
      for (std::uint8_t rule = 0; rule < (k.function < 2 ? 7 : 1); ++rule) {
        for (const std::uint8_t family : bytes{0, 1}) {
          write("look_up", {bytes{k.function, family, 0, rule, 0, k.a, 0, k.b, 0, 1, 0, 1, 0}, image});
        }
      }
      write("explain", {bytes{8, 0}, image});
    }
  }
  for (const unsigned curves : {1u, 3u, 4u, 6u}) {
    for (const std::uint8_t kind : bytes{5, 6, 7}) {
      for (const std::uint8_t choice : bytes{0, 1, 2})
        write("explain", {bytes{kind, choice}, curve(curves, choice == 0 ? "0010" : "0020", 0)});
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return std::fputs("usage: vrk_seeds DIR\n", stderr), 2;
  root = argv[1];
  write_curves(), write_grids(), write_halftones(), write_blobs();
}
