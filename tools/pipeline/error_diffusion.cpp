#include <algorithm>
#include <cstring>

#include "kit/explain.h"
#include "kit/inspect.h"
#include "tools/pipeline/halftone.h"
#include "tools/pipeline/stage_handle.h"
#include "tools/pipeline/warm_up.h"

namespace vrk::tool {
namespace {

std::uint32_t ed_flags(ed_precision precision) {
  switch (precision) {
    case ed_precision::bits8:
      return 0;
    case ed_precision::bits10:
      return VRK_PREC10;
    default:
      return VRK_IN16;
  }
}

// Pixels that are diffused on both sides of the page and dropped. Errors that leave a block are lost, which takes half
// the ink from the outer 12 columns of a 1 % tint; so they leave it out there. A whole number of bytes in every plane.
constexpr std::uint32_t usual_margin = 16;

// Where the page lies in the lines of its handle: behind columns that nobody uses, so many that its matrices and dot
// patterns begin at its edge, and the margin.
struct page_columns {
  std::uint32_t width, margin = usual_margin, unused = 0;

  page_columns(std::uint32_t page_width, const table& parameters) : width(page_width) {
    constexpr std::uint64_t longest = 1 << 16;  // what else repeats, repeats on no page: it has no margin
    const std::uint64_t repeat = kit::columns_of_a_repeat(parameters.image);
    if (repeat > longest)
      margin = 0;
    else
      unused = std::uint32_t((margin + repeat - 1) / repeat * repeat) - margin;
  }
  std::uint32_t block() const { return width + 2 * margin; }
  std::uint32_t handle() const { return unused + block(); }
};

// One block as wide as the page and its margins, from line 0 to the last. The first line with ink comes after lines
// like it, which are dropped.
class error_diffusion final : public halftone {
 public:
  error_diffusion(stage_handle built, const table& parameters, const page_columns& columns, bool samples16)
      : halftone("error diffusion"), handle_(std::move(built)), columns_(columns), sample_bytes_(samples16 ? 2 : 1) {
    vrk_ht_info info;
    vrk_query_ed_info(handle_.get(), &info);
    std::uint8_t bits[6];
    vrk_query_ed_bitlen(handle_.get(), bits);
    flags_ = flag_words(vrk_query_ed_hint(handle_.get()), "10-bit precision");
    const auto values = kit::ed_level_values(parameters.image);
    describe_planes(parameters, info, bits, values, 1023);
    level_values_.assign(values.begin(), values.begin() + std::ptrdiff_t(planes_.size()));
    cut_to_page();
    samples_.resize(pixel_bytes() * columns_.block());
    vrk_clear_ed_buf(handle_.get());  // no error left over from another page
    vrk_start_ed_block(handle_.get(), columns_.block(), columns_.unused, 0);
  }
  ~error_diffusion() override {
    vrk_end_ed_block(handle_.get());
    vrk_free_ed(handle_.get());
  }

  void run(const void* src, std::uint8_t* out) override {
    add_margins(static_cast<const std::uint8_t*>(src));
    if (!has_ink_) {
      has_ink_ = samples_[0] != 0 || std::memcmp(samples_.data(), &samples_[1], samples_.size() - 1) != 0;
      if (has_ink_) warm_up();
    }
    vrk_exec_edx(handle_.get(), samples_.data(), lines_.data());
    ++line_;
    for (std::size_t p = 0, line = 0; p < planes_.size(); ++p) {
      const plane_format& plane = planes_[p];
      for (unsigned y = 0; y < plane.scale.y; ++y, ++line) {
        std::uint8_t* const to = out + plane.offset + y * plane.line_bytes;
        std::copy_n(lines_[line] + dots_before(plane) / 8, plane.line_bytes, to);
        to[plane.line_bytes - 1] &= last_byte_[p];
      }
    }
  }

 private:
  std::size_t pixel_bytes() const { return planes_.size() * sample_bytes_; }
  std::size_t dots_before(const plane_format& plane) const {
    return std::size_t{columns_.margin} * plane.scale.x * plane.bits;  // in bits
  }

  // Lines of dots for the block; the planes then have those of the page.
  void cut_to_page() {
    std::size_t page_bytes = 0;
    for (plane_format& plane : planes_) {
      const std::size_t pixel_bits = std::size_t{plane.scale.x} * plane.bits;
      const std::size_t block_bytes = (pixel_bits * columns_.block() + 7) / 8, bits = pixel_bits * columns_.width;
      for (unsigned y = 0; y < plane.scale.y; ++y) {
        dots_.emplace_back(block_bytes);
        lines_.push_back(dots_.back().data());
      }
      plane.line_bytes = (bits + 7) / 8;
      plane.offset = page_bytes;
      page_bytes += plane.scale.y * plane.line_bytes;
      last_byte_.push_back(std::uint8_t(0xFF << (8 * plane.line_bytes - bits)));
    }
  }

  // The edges of the line go on beside the page.
  void add_margins(const std::uint8_t* line) {
    const std::size_t pixel = pixel_bytes(), margin = columns_.margin * pixel, width = columns_.width * pixel;
    std::copy_n(line, width, &samples_[margin]);
    for (std::size_t x = 0; x < margin; x += pixel) {
      std::copy_n(line, pixel, &samples_[x]);
      std::copy_n(line + width - pixel, pixel, &samples_[margin + width + x]);
    }
  }

  // Line numbers count down from that of the line, below 0 around to the highest ones: direction and matrices go on.
  void warm_up() {
    const unsigned lines = sample_bytes_ == 2 ? warm_up_lines(reinterpret_cast<const std::uint16_t*>(samples_.data()),
                                                              columns_.block(), level_values_)
                                              : warm_up_lines(samples_.data(), columns_.block(), level_values_);
    vrk_start_ed_block(handle_.get(), columns_.block(), columns_.unused, line_ - lines);
    for (unsigned i = 0; i < lines; ++i) vrk_exec_edx(handle_.get(), samples_.data(), lines_.data());
  }

  stage_handle handle_;
  page_columns columns_;
  std::size_t sample_bytes_;
  std::vector<std::vector<std::uint16_t>> level_values_;  // of every plane
  std::vector<std::uint8_t> samples_;                     // of a line with its margins
  std::vector<std::vector<std::uint8_t>> dots_;           // the lines of all planes, with margins
  std::vector<std::uint8_t*> lines_;                      // of them
  std::vector<std::uint8_t> last_byte_;                   // of each plane's line: which bits belong to the page
  std::uint32_t line_ = 0;
  bool has_ink_ = false;  // a line of the page had
};

}  // namespace

std::unique_ptr<halftone> make_error_diffusion(const table& distribution, const table& parameters, std::uint32_t width,
                                               ed_precision precision) {
  const page_columns columns(width, parameters);
  stage_handle built;
  if (!built.build([&](void* mem) {
        return vrk_create_ed(columns.handle(), distribution.size(), distribution.image.data(), parameters.size(),
                             parameters.image.data(), ed_flags(precision), mem);
      })) {
    if (const kit::refusal why = kit::why_refused_edpr(parameters.image)) refuse(parameters, why);
    refuse(distribution, kit::why_refused_edtb(distribution.image));
  }
  return std::make_unique<error_diffusion>(std::move(built), parameters, columns, precision == ed_precision::samples16);
}

}  // namespace vrk::tool
