#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "tools/image/c_library.h"
#include "tools/image/exif.h"
#include "tools/image/image_reader.h"
// jpeglib.h needs <cstdio> before it.
#include <jerror.h>
#include <jpeglib.h>

namespace vrk::tool {
namespace {

class jpeg_reader final : public image_reader {
 public:
  jpeg_reader(input_file file, const std::string& name, const picture_limits& limits)
      : image_reader(name), file_(std::move(file)), max_memory_(limits.memory) {
    jpeg_.err = jpeg_std_error(&errors_);
    jpeg_.client_data = this;
    errors_.error_exit = on_error;
    errors_.emit_message = on_message;
    try {
      run_c(failure_, name_, [this] { read_header(); });
      require_size(limits);
      if (jpeg_has_multiple_scans(&jpeg_) != 0)
        require_memory("progressive (in several scans)", coefficient_bytes() + marker_bytes_, max_memory_);
      run_c(failure_, name_, [this] { start(); });
      read_notes();
      read_profile();
    } catch (...) {
      jpeg_destroy_decompress(&jpeg_);
      throw;
    }
  }
  ~jpeg_reader() override { jpeg_destroy_decompress(&jpeg_); }
  jpeg_reader(const jpeg_reader&) = delete;
  jpeg_reader& operator=(const jpeg_reader&) = delete;

  void read_line(void* line) override {
    run_c(failure_, name_, [&] {
      auto* row = static_cast<JSAMPROW>(line);
      jpeg_read_scanlines(&jpeg_, &row, 1);
      if (jpeg_.output_scanline == jpeg_.output_height) jpeg_finish_decompress(&jpeg_);
    });
    // Files with this marker are inverted: 0 is full ink.
    if (channels_ == 4 && jpeg_.saw_Adobe_marker) {
      auto* const inks = static_cast<std::uint8_t*>(line);
      std::transform(inks, inks + line_bytes(), inks, [](std::uint8_t paper) { return std::uint8_t(255 - paper); });
    }
  }

 private:
  void read_header() {
    jpeg_create_decompress(&jpeg_);
    jpeg_stdio_src(&jpeg_, file_.get());
    jpeg_save_markers(&jpeg_, exif_marker, 0xFFFF);
    jpeg_save_markers(&jpeg_, icc_marker, 0xFFFF);
    jpeg_read_header(&jpeg_, TRUE);
    width_ = jpeg_.image_width;
    height_ = jpeg_.image_height;
    channels_ = unsigned(jpeg_.num_components);
  }

  // The decoder keeps the coefficients of a picture in several scans until it has read the last one.
  std::uint64_t coefficient_bytes() const {
    std::uint64_t bytes = 0;
    for (int i = 0; i < jpeg_.num_components; ++i) {
      bytes += std::uint64_t{jpeg_.comp_info[i].width_in_blocks} * jpeg_.comp_info[i].height_in_blocks * sizeof(JBLOCK);
    }
    return bytes;
  }

  void start() {
    jpeg_.progress = &scans_;
    scans_.progress_monitor = on_progress;
    jpeg_.out_color_space = jpeg_.num_components == 1 ? JCS_GRAYSCALE : jpeg_.num_components == 4 ? JCS_CMYK : JCS_RGB;
    jpeg_start_decompress(&jpeg_);
    width_ = jpeg_.output_width;
    height_ = jpeg_.output_height;
    channels_ = unsigned(jpeg_.output_components);
  }

  static bool begins_with(const jpeg_marker_struct& marker, int kind, std::string_view lead) {
    return marker.marker == kind && marker.data_length >= lead.size() &&
           std::memcmp(marker.data, lead.data(), lead.size()) == 0;
  }

  // The density of the JFIF header comes before the camera's, which often stays when a picture is made smaller.
  void read_notes() {
    for (auto marker = jpeg_.marker_list; marker != nullptr; marker = marker->next) {
      constexpr std::string_view lead("Exif\0", 6);
      if (!begins_with(*marker, exif_marker, lead)) continue;
      const exif_notes notes = read_exif(marker->data + lead.size(), marker->data_length - lead.size());
      dpi_ = notes.dpi;
      seen_ = notes.seen;
      profile_ = profile_of(notes.color, channels_);
    }
    constexpr int per_inch = 1, per_centimetre = 2;
    if (!jpeg_.saw_JFIF_marker || jpeg_.X_density == 0 || jpeg_.Y_density == 0) return;
    if (jpeg_.density_unit != per_inch && jpeg_.density_unit != per_centimetre) return;
    const double unit = jpeg_.density_unit == per_inch ? 1 : mm_per_inch / 10;
    dpi_ = {jpeg_.X_density * unit, jpeg_.Y_density * unit};
  }

  // A profile may be in the pieces of several markers.
  void read_profile() {
    JOCTET* icc = nullptr;
    unsigned size = 0;
    run_c(failure_, name_, [&] { jpeg_read_icc_profile(&jpeg_, &icc, &size); });
    const std::unique_ptr<JOCTET, decltype([](JOCTET* bytes) { std::free(bytes); })> owner(icc);
    if (icc != nullptr) return profile_.assign(icc, icc + size);
    for (auto marker = jpeg_.marker_list; marker != nullptr; marker = marker->next) {
      if (begins_with(*marker, icc_marker, std::string_view("ICC_PROFILE", 12))) note_damaged_profile();
    }
  }

  // The decoder tells of every marker that it has kept or passed over.
  void count_marker(int marker, int bytes) {
    if (marker != exif_marker && marker != icc_marker) return;
    marker_bytes_ += std::uint64_t(bytes);
    if (marker_bytes_ > max_memory_) failure_.jump("holds more notes and profiles than --max-memory lets it");
  }

  // A small file may hold very many scans, each of which takes as long as a whole picture.
  static void on_progress(j_common_ptr jpeg) {
    constexpr int most_scans = 500;
    if (reinterpret_cast<j_decompress_ptr>(jpeg)->input_scan_number <= most_scans) return;
    static_cast<jpeg_reader*>(jpeg->client_data)->failure_.jump("has more than 500 scans");
  }
  static void report(j_common_ptr jpeg) {
    char text[JMSG_LENGTH_MAX];
    jpeg->err->format_message(jpeg, text);
    static_cast<jpeg_reader*>(jpeg->client_data)->failure_.jump(text);
  }
  [[noreturn]] static void on_error(j_common_ptr jpeg) {
    report(jpeg);
    std::abort();  // not reached
  }
  // The decoder fills in gray for lost data and only warns; here lost data are an error.
  static void on_message(j_common_ptr jpeg, int level) {
    auto* const self = static_cast<jpeg_reader*>(jpeg->client_data);
    if (jpeg->err->msg_code == JTRC_MISC_MARKER) self->count_marker(jpeg->err->msg_parm.i[0], jpeg->err->msg_parm.i[1]);
    if (level >= 0) return;
    switch (jpeg->err->msg_code) {
      case JWRN_JPEG_EOF:
      case JWRN_HIT_MARKER:
        self->failure_.jump("the file ends before the picture does, or is damaged");
      case JWRN_HUFF_BAD_CODE:
      case JWRN_MUST_RESYNC:
        report(jpeg);
        break;
      default:
        break;
    }
  }

  static constexpr int exif_marker = JPEG_APP0 + 1, icc_marker = JPEG_APP0 + 2;

  input_file file_;
  std::uint64_t max_memory_, marker_bytes_ = 0;
  c_failure failure_;
  jpeg_error_mgr errors_{};
  jpeg_progress_mgr scans_{};
  jpeg_decompress_struct jpeg_{};
};

}  // namespace

std::unique_ptr<image_reader> read_jpeg(input_file file, const std::string& name, const picture_limits& limits) {
  return std::make_unique<jpeg_reader>(std::move(file), name, limits);
}

}  // namespace vrk::tool
