#include "kit/read_tables.h"

#include "base/byte_view.h"

namespace vrk::kit {
namespace {

// Takes one field after the other, as the encoders put them.
class field_reader {
 public:
  explicit field_reader(const bytes& image, u64 from = 0) : image_(image.data(), image.size()), at_(from) {}

  unsigned take8() { return image_.byte(at_++); }
  std::uint16_t take_be16() { return image_.be16((at_ += 2) - 2); }
  std::uint32_t take_be32() { return image_.be32((at_ += 4) - 4); }
  std::string take_text() {
    std::string text(4, ' ');
    for (char& c : text) c = char(take8());
    return text;
  }
  std::vector<std::uint16_t> take_list(std::size_t count) {
    std::vector<std::uint16_t> list(count);
    for (std::uint16_t& v : list) v = take_be16();
    return list;
  }
  std::array<unsigned, 6> take_counts() {  // a byte for each plane
    std::array<unsigned, 6> counts{};
    for (unsigned& n : counts) n = take8();
    return counts;
  }
  void skip(u64 bytes) { at_ += bytes; }

 private:
  byte_view image_;
  u64 at_;
};

}  // namespace

color_table read_color_table_header(const bytes& image) {
  field_reader from(image);
  color_table table;
  table.magic = from.take_text();
  table.version = from.take_text();
  table.in_channels = from.take8();
  table.grid.channels = from.take8();
  table.grid.points = from.take8();
  table.encoding = grid_encoding(from.take8());
  for (axis_positions& axis : table.axes) axis = from.take_list(table.grid.points);
  return table;
}

curve_image read_curve_image(const bytes& image, unsigned curves) {
  field_reader from(image);
  curve_image read;
  read.magic = from.take_text();
  read.version = from.take_text();
  read.curve_count = from.take8();
  read.output_count = from.take8();
  read.entries = from.take_be16();
  read.curves.resize(curves);
  for (curve& c : read.curves) {
    for (std::uint16_t& level : c) level = from.take_be16();
  }
  return read;
}

edpr_table read_edpr(const bytes& image) {
  field_reader from(image);
  edpr_table table;
  table.magic = from.take_text();
  table.version = from.take_text();
  const std::array<unsigned, 6> levels = from.take_counts();
  for (unsigned* const field :
       {&table.matrix_width, &table.matrix_height, &table.matrix_column_shift, &table.matrix_row_shift}) {
    *field = from.take8();
  }
  for (ed_plane& p : table.planes) p.bits = from.take8();
  if (table.extended()) {
    for (ed_plane& p : table.planes) p.scale_x = from.take8();
    for (ed_plane& p : table.planes) p.scale_y = from.take8();
    for (unsigned* const field :
         {&table.pattern_width, &table.pattern_height, &table.pattern_column_shift, &table.pattern_row_shift}) {
      *field = from.take8();
    }
  }
  for (std::size_t p = 0; p < 6; ++p) table.planes[p].level_values = from.take_list(levels[p]);
  for (ed_plane& p : table.planes)
    p.thresholds = from.take_list(p.level_values.empty() ? 0 : p.level_values.size() - 1);
  for (ed_plane& p : table.planes) {
    if (p.level_values.empty()) continue;
    for (unsigned left = table.matrix_width * table.matrix_height; left != 0; --left) {
      p.modulation.push_back(std::int8_t(from.take8()));
    }
  }
  if (!table.extended()) return table;
  for (ed_plane& p : table.planes) {
    p.patterns.resize(p.level_values.size());
    for (auto& cells : p.patterns) cells = from.take_list(std::size_t{table.pattern_width} * table.pattern_height);
  }
  return table;
}

edtb_table read_edtb(const bytes& image) {
  field_reader from(image);
  edtb_table table;
  table.magic = from.take_text();
  table.version = from.take_text();
  table.rows.resize(from.take_be16());
  table.column_count = from.take8();
  from.skip(1);
  for (edtb_row& row : table.rows) {
    for (std::int16_t& amount : row) amount = std::int16_t(from.take_be16());
  }
  return table;
}

dither_table read_dither_table(const bytes& image) {
  field_reader from(image);
  dither_table table;
  table.magic = from.take_text();
  table.version = from.take_text();
  for (dither_plane& p : table.planes) {
    p.width = from.take8();
    p.height = from.take8();
  }
  const std::array<unsigned, 6> levels = from.take_counts();
  for (dither_plane& p : table.planes) p.bits = from.take8();
  for (std::size_t p = 0; p < 6; ++p) table.planes[p].level_values = from.take_list(levels[p]);
  for (dither_plane& p : table.planes) {
    p.matrix = from.take_list(p.level_values.empty() ? 0 : std::size_t{p.width} * p.height);
  }
  return table;
}

blob read_blob_directory(const bytes& image) {
  field_reader from(image);
  blob read;
  read.magic = from.take_text();
  read.type = from.take_text();
  read.version = from.take_text();
  from.skip(12);
  read.class_code = char(from.take8());
  from.skip(6);
  read.end_mark = from.take8();
  read.entries.resize(from.take_be16());
  from.skip(6);
  for (blob_entry& entry : read.entries) {
    entry.tag = from.take_text();
    entry.offset = from.take_be32();
    entry.length = from.take_be32();
  }
  return read;
}

bool lies_inside(const blob_entry& entry, const bytes& image) {
  return byte_view(image.data(), image.size()).holds(*entry.offset, *entry.length);
}

bytes data_of(const blob_entry& entry, const bytes& image) {
  const auto first = image.begin() + std::ptrdiff_t(*entry.offset);
  return {first, first + std::ptrdiff_t(*entry.length)};
}

}  // namespace vrk::kit
