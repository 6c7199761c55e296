#include <png.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <string_view>
#include <vector>

#include "kit/profiles/plain_profile.h"
#include "tools/image/c_library.h"
#include "tools/image/exif.h"
#include "tools/image/image_reader.h"

namespace vrk::tool {
namespace {

bool are_those_of_srgb(const profiles::primaries& colors) {
  const auto numbers = [](const profiles::primaries& p) {
    return std::array{p.white.x, p.white.y, p.red.x, p.red.y, p.green.x, p.green.y, p.blue.x, p.blue.y};
  };
  constexpr double rounding = 0.001;
  return std::ranges::equal(numbers(colors), numbers(profiles::srgb_primaries),
                            [](double a, double b) { return std::abs(a - b) < rounding; });
}

// The camera's note of a file that can be read twice; none for others. It may stand behind the picture's data, where it
// is found too late by who reads those line by line.
kit::bytes find_exif(std::FILE* file) {
  constexpr long signature_bytes = 8, sum_bytes = 4;
  constexpr std::uint32_t most = 1 << 20;
  const long start = std::ftell(file);
  if (start < 0 || std::fseek(file, start + signature_bytes, SEEK_SET) != 0) return {};
  kit::bytes found;
  std::array<std::uint8_t, 8> head{};  // of a chunk: length and type
  while (found.empty() && std::fread(head.data(), 1, head.size(), file) == head.size()) {
    const std::uint32_t length = png_get_uint_32(head.data());
    const std::string_view type(reinterpret_cast<const char*>(&head[4]), 4);
    if (type == "IEND" || length > PNG_UINT_31_MAX) break;
    if (type == "eXIf" && length <= most) {
      found.resize(length);
      found.resize(std::fread(found.data(), 1, length, file));
    } else if (std::fseek(file, long(length) + sum_bytes, SEEK_CUR) != 0) {
      break;
    }
  }
  std::fseek(file, start, SEEK_SET);
  return found;
}

// Palettes and low bit depths become 8 bits, transparent pixels are blended with white, 16-bit samples stay.
class png_reader final : public image_reader {
 public:
  png_reader(input_file file, const std::string& name, const picture_limits& limits)
      : image_reader(name), file_(std::move(file)) {
    png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, on_error, on_warning);
    info_ = png_create_info_struct(png_);
    try {
      const kit::bytes exif = find_exif(file_.get());
      run_c(failure_, name_, [&] { read_header(limits.memory); });
      require_size(limits);
      run_c(failure_, name_, [&] { start(); });
      read_notes(exif);
      read_profile();
      if (png_get_interlace_type(png_, info_) != PNG_INTERLACE_NONE) read_whole(limits.memory);
    } catch (...) {
      png_destroy_read_struct(&png_, &info_, nullptr);
      throw;
    }
  }
  ~png_reader() override { png_destroy_read_struct(&png_, &info_, nullptr); }
  png_reader(const png_reader&) = delete;
  png_reader& operator=(const png_reader&) = delete;

  void read_line(void* line) override {
    const bool last = ++lines_read_ == height_;
    if (whole_) {
      std::copy_n(&whole_[(lines_read_ - 1) * line_bytes()], line_bytes(), static_cast<std::uint8_t*>(line));
      return;
    }
    run_c(failure_, name_, [&] {
      png_read_row(png_, static_cast<png_bytep>(line), nullptr);
      if (last) png_read_end(png_, nullptr);
    });
  }

 private:
  void read_header(std::uint64_t max_memory) {
    constexpr unsigned most_channels = 4;
    png_set_read_fn(png_, file_.get(), read_bytes);
    png_set_user_limits(png_, PNG_UINT_31_MAX, PNG_UINT_31_MAX);  // see require_size
    // Of all that may stand beside the picture, only what counts is kept, and no more of it than this.
    constexpr std::uint64_t most_beside = 32 << 20;
    png_set_chunk_malloc_max(png_, png_alloc_size_t(std::min(max_memory, most_beside)));
    png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER,
                                reinterpret_cast<png_const_bytep>("tEXt\0zTXt\0iTXt\0sPLT\0hIST\0pCAL\0sCAL"), 7);
    png_read_info(png_, info_);
    png_set_expand(png_);
    png_get_gAMA_fixed(png_, info_, &inverse_gamma_);
    png_set_gamma(png_, 1, 1);  // mix samples as they are stored, whatever they mean
    const auto type = png_get_color_type(png_, info_);
    if ((type & PNG_COLOR_MASK_ALPHA) != 0 || png_get_valid(png_, info_, PNG_INFO_tRNS) != 0) {
      png_color_16 white{};
      const int depth = png_get_bit_depth(png_, info_);
      white.red = white.green = white.blue = white.gray = png_uint_16(depth == 16 ? 0xFFFF : 0xFF);
      png_set_background(png_, &white, PNG_BACKGROUND_GAMMA_SCREEN, 0, 1.0);
    }
    if constexpr (std::endian::native == std::endian::little) png_set_swap(png_);
    png_set_interlace_handling(png_);
    width_ = png_get_image_width(png_, info_);
    height_ = png_get_image_height(png_, info_);
    channels_ = most_channels;
    bits_ = 16;
  }

  // Takes the memory for lines.
  void start() {
    png_read_update_info(png_, info_);
    channels_ = png_get_channels(png_, info_);
    bits_ = png_get_bit_depth(png_, info_);
  }

  void read_notes(const kit::bytes& found) {
    png_uint_32 size = 0, x = 0, y = 0;
    png_bytep exif = nullptr;
    const bool in_front = png_get_eXIf_1(png_, info_, &size, &exif) != 0;
    if (in_front || !found.empty()) {
      const exif_notes notes = in_front ? read_exif(exif, size) : read_exif(found.data(), found.size());
      dpi_ = notes.dpi;
      seen_ = notes.seen;
      profile_ = profile_of(notes.color, channels_);
    }
    int unit = PNG_RESOLUTION_UNKNOWN;
    if (png_get_pHYs(png_, info_, &x, &y, &unit) == 0 || unit != PNG_RESOLUTION_METER || x == 0 || y == 0) return;
    dpi_ = {x * mm_per_inch / 1000, y * mm_per_inch / 1000};
  }

  // The chunks' own order of precedence; what a camera noted is the last that counts.
  void read_profile() {
    png_charp name = nullptr;
    png_bytep icc = nullptr;
    png_uint_32 size = 0;
    int method = 0, intent = 0;
    if (png_get_iCCP(png_, info_, &name, &method, &icc, &size) != 0) {
      profile_.assign(icc, icc + size);
    } else if (refused_profile_) {
      note_damaged_profile();
    } else if (png_get_sRGB(png_, info_, &intent) != 0) {
      profile_ = profiles::srgb_profile(channels_);
    } else {
      read_numbers();
    }
  }

  // The inverse of gamma 2.2, rounded, is what the format has for the curve of sRGB.
  void read_numbers() {
    constexpr png_fixed_point inverse_of_srgb = 45455;
    profiles::primaries colors = profiles::srgb_primaries;
    auto& [white, red, green, blue] = colors;
    const bool primaries =
        png_get_cHRM(png_, info_, &white.x, &white.y, &red.x, &red.y, &green.x, &green.y, &blue.x, &blue.y) != 0;
    if (inverse_gamma_ == 0 && !primaries) return;
    const png_fixed_point inverse = inverse_gamma_ == 0 ? inverse_of_srgb : inverse_gamma_;
    const double gamma = 1e5 / inverse;
    if (inverse == inverse_of_srgb && (!primaries || channels_ == 1 || are_those_of_srgb(colors))) {
      profile_ = profiles::srgb_profile(channels_);
    } else {
      char text[64];
      std::snprintf(text, sizeof text, "gamma %.3g%s", gamma, primaries ? " with primaries of its own" : "");
      profile_ = profiles::plain_profile(channels_, text, gamma, colors);
    }
  }

  // The last pass of an interlaced picture still changes its first line, so the whole picture is read at once.
  // Its memory is not touched before there are samples for it.
  void read_whole(std::uint64_t max_memory) {
    const std::uint64_t bytes = std::uint64_t{line_bytes()} * height_;
    require_memory("interlaced", bytes + height_ * sizeof(png_bytep), max_memory);
    whole_ = std::make_unique_for_overwrite<std::uint8_t[]>(bytes);
    std::vector<png_bytep> rows(height_);
    for (std::size_t y = 0; y < height_; ++y) rows[y] = &whole_[y * line_bytes()];
    png_bytepp lines = rows.data();
    run_c(failure_, name_, [this, lines] {
      png_read_image(png_, lines);
      png_read_end(png_, nullptr);
    });
  }

  static void read_bytes(png_structp png, png_bytep to, std::size_t count) {
    auto* const file = static_cast<std::FILE*>(png_get_io_ptr(png));
    if (std::fread(to, 1, count, file) != count) png_error(png, "the file ends before the picture does");
  }
  [[noreturn]] static void on_error(png_structp png, png_const_charp text) {
    static_cast<png_reader*>(png_get_error_ptr(png))->failure_.jump(text);
  }
  static void on_warning(png_structp png, png_const_charp text) {
    auto* const self = static_cast<png_reader*>(png_get_error_ptr(png));
    if (std::string_view(text).ends_with("chunk data is too large")) {
      self->failure_.jump("holds a note or a profile of more than --max-memory, or than 32 MB");
    }
    if (std::string_view(text).starts_with("iCCP")) self->refused_profile_ = true;
  }

  input_file file_;
  c_failure failure_;
  png_fixed_point inverse_gamma_ = 0;  // as the file says, times 100000; 0: it does not
  bool refused_profile_ = false;       // or complained about
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  unsigned lines_read_ = 0;
  std::unique_ptr<std::uint8_t[]> whole_;
};

}  // namespace

std::unique_ptr<image_reader> read_png(input_file file, const std::string& name, const picture_limits& limits) {
  return std::make_unique<png_reader>(std::move(file), name, limits);
}

}  // namespace vrk::tool
