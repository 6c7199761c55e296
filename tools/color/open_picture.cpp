#include "tools/color/open_picture.h"

#include <cstdio>
#include <optional>
#include <utility>
#include <vector>

#include "kit/profiles/srgb_conversion.h"
#include "tools/command_line/printable.h"
#include "tools/print/blob_argument.h"
#include "tools/sandbox/open_pages.h"

namespace vrk::tool {
namespace {

class meant_picture final : public image_reader {
 public:
  explicit meant_picture(std::unique_ptr<image_reader> picture)
      : image_reader(*picture), picture_(std::move(picture)), line_(picture_->line_bytes()) {
    profile_.clear();
    colors_ = {channels_ == 4 ? "inks" : "sRGB", "assumed"};
  }

  void set(const profiles::profile& meaning, const table& source, const char* origin, bool keeps_inks) {
    const bool converted = channels_ == 4 ? !keeps_inks : !profiles::is_srgb(meaning);
    if (converted) conversion_.emplace(meaning, bits_);
    if (channels_ == 4 && keeps_inks) profile_ = source.image;
    if (channels_ == 4 && converted) channels_ = 3;
    colors_ = {meaning.description(), origin};
  }

  void read_line(void* line) override {
    if (!conversion_) return picture_->read_line(line);
    picture_->read_line(line_.data());
    conversion_->convert(line_.data(), width_, line);
  }

 private:
  std::unique_ptr<image_reader> picture_;
  std::optional<profiles::srgb_conversion> conversion_;
  std::vector<std::uint8_t> line_;  // as the picture has it
};

profiles::profile profile_for(const image_reader& picture, const table& source) {
  const auto name_of = [](unsigned channels) { return channels == 1 ? "gray" : channels == 3 ? "RGB" : "CMYK"; };
  profiles::profile made(source.name, source.image);
  if (made.channels() == picture.channels()) return made;
  throw profiles::profile_error(source.name + ": is no profile for " + name_of(picture.channels()) + ", which " +
                                picture.name() + " holds");
}

}  // namespace

std::unique_ptr<image_reader> open_picture(const image_argument& argument, bool keeps_inks) {
  return give_colors(open_pages(open_input(argument.path), argument.limits, argument.sandbox)(), argument, keeps_inks);
}

std::unique_ptr<image_reader> give_colors(std::unique_ptr<image_reader> stored, const image_argument& argument,
                                          bool keeps_inks) {
  const bool named = argument.is_profile_named();
  table source{"the profile in " + stored->name(), stored->profile()};
  if (named) source = read_table(argument.profile);
  auto picture = std::make_unique<meant_picture>(std::move(stored));
  if (argument.profile == "none" || source.image.empty()) return picture;
  try {
    picture->set(profile_for(*picture, source), source, named ? "named" : "embedded", keeps_inks);
  } catch (const profiles::profile_error& error) {
    if (named) throw user_error(error.what());
    const std::string warning = std::string(error.what()) + "; the picture counts as " + picture->colors().profile;
    std::fprintf(stderr, "vrk: %s\n", printable(warning).c_str());
  }
  return picture;
}

}  // namespace vrk::tool
