#include <webp/decode.h>
#include <webp/demux.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "tools/image/alpha.h"
#include "tools/image/exif.h"
#include "tools/image/image_reader.h"
#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

// Decoded as a whole: most such files say only at their end what their first line is.
class webp_reader final : public image_reader {
 public:
  webp_reader(input_file file, const std::string& name, const picture_limits& limits) : image_reader(name) {
    channels_ = 3;
    const kit::bytes data = read_file(*file, limits.memory);
    WebPDecoderConfig decoder;
    WebPInitDecoderConfig(&decoder);
    check(WebPGetFeatures(data.data(), data.size(), &decoder.input));
    if (decoder.input.has_animation != 0) refuse("is animated, expected a still picture");
    width_ = unsigned(decoder.input.width);
    height_ = unsigned(decoder.input.height);
    require_size(limits);
    alpha_ = decoder.input.has_alpha != 0;
    read_notes(data);
    decode(data, decoder, limits.memory);
  }

  void read_line(void* line) override {
    const std::uint8_t* from = &pixels_[lines_read_++ * stride()];
    auto* to = static_cast<std::uint8_t*>(line);
    if (!alpha_) {
      std::copy_n(from, line_bytes(), to);
      return;
    }
    for (unsigned x = 0; x < width_; ++x, from += 4) {
      for (unsigned c = 0; c < 3; ++c) *to++ = std::uint8_t(over_paper(from[c], 255, from[3], 255));
    }
  }

 private:
  [[noreturn]] void refuse(const std::string& why) const { throw user_error(name_ + ": " + why); }
  [[noreturn]] void refuse_short() const { refuse("the file ends before the picture does"); }

  void check(VP8StatusCode status) const {
    if (status == VP8_STATUS_OK) return;
    if (status == VP8_STATUS_OUT_OF_MEMORY) throw std::bad_alloc();
    if (status == VP8_STATUS_NOT_ENOUGH_DATA || status == VP8_STATUS_SUSPENDED) refuse_short();
    refuse("is a damaged WebP file");
  }

  kit::bytes read_file(std::FILE& file, std::uint64_t max_memory) const {
    kit::bytes data(12);  // "RIFF", how many bytes follow behind these eight, "WEBP"
    if (std::fread(data.data(), 1, data.size(), &file) != data.size()) refuse_short();
    if (std::memcmp(&data[0], "RIFF", 4) != 0 || std::memcmp(&data[8], "WEBP", 4) != 0) {
      refuse("is neither " + std::string(picture_formats));
    }
    const std::uint64_t size =
        8 + (std::uint64_t{data[4]} | data[5] << 8 | data[6] << 16 | std::uint64_t{data[7]} << 24);
    require_memory(because, size, max_memory);
    while (data.size() < size) {  // by parts: the file may be shorter than it says
      const std::size_t had = data.size();
      data.resize(std::size_t(std::min<std::uint64_t>(size, had + (1 << 20))));
      if (std::fread(&data[had], 1, data.size() - had, &file) != data.size() - had) refuse_short();
    }
    return data;
  }

  void read_notes(const kit::bytes& data) {
    const WebPData file{data.data(), data.size()};
    const std::unique_ptr<WebPDemuxer, void (*)(WebPDemuxer*)> chunks(WebPDemux(&file), WebPDemuxDelete);
    if (!chunks) refuse("is a damaged WebP file");
    const auto chunk = [&](const char* tag) {
      kit::bytes found;
      WebPChunkIterator at;
      if (WebPDemuxGetChunk(chunks.get(), tag, 1, &at) != 0) {
        found.assign(at.chunk.bytes, at.chunk.bytes + at.chunk.size);
        WebPDemuxReleaseChunkIterator(&at);
      }
      return found;
    };
    profile_ = chunk("ICCP");
    kit::bytes exif = chunk("EXIF");
    constexpr std::size_t lead = 6;  // some programs write what a JPEG has there
    if (exif.size() >= lead && std::memcmp(exif.data(), "Exif\0", lead) == 0)
      exif.erase(exif.begin(), exif.begin() + lead);
    if (exif.empty()) return;
    const exif_notes notes = read_exif(exif.data(), exif.size());
    dpi_ = notes.dpi;
    seen_ = notes.seen;
    if (profile_.empty()) profile_ = profile_of(notes.color, channels_);
  }

  std::size_t stride() const { return std::size_t{width_} * (alpha_ ? 4 : 3); }

  void decode(const kit::bytes& data, WebPDecoderConfig& decoder, std::uint64_t max_memory) {
    // Beside the result, the decoder has all pixels of lossless pictures, and all shares of transparent ones.
    constexpr int lossless = 2;
    const std::uint64_t pixels = std::uint64_t{width_} * height_, bytes = stride() * height_;
    const unsigned own = decoder.input.format == lossless ? 4 : alpha_ ? 2 : 0;
    require_memory(because, data.size() + bytes + own * pixels, max_memory);
    pixels_ = std::make_unique_for_overwrite<std::uint8_t[]>(bytes);
    decoder.output.colorspace = alpha_ ? MODE_RGBA : MODE_RGB;
    decoder.output.is_external_memory = 1;
    decoder.output.u.RGBA = {pixels_.get(), int(stride()), bytes};
    check(WebPDecode(data.data(), data.size(), &decoder));
  }

  static constexpr const char* because = "WebP, decoded as a whole,";

  bool alpha_ = false;
  std::unique_ptr<std::uint8_t[]> pixels_;
  unsigned lines_read_ = 0;
};

}  // namespace

std::unique_ptr<image_reader> read_webp(input_file file, const std::string& name, const picture_limits& limits) {
  return std::make_unique<webp_reader>(std::move(file), name, limits);
}

}  // namespace vrk::tool
