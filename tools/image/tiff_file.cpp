#include "tools/image/tiff_file.h"

#include <algorithm>
#include <cstdio>
#include <limits>

#include "tools/pipeline/user_error.h"

namespace vrk::tool {
namespace {

tiff_file& from(void* self) { return *static_cast<tiff_file*>(self); }

std::string formatted(const char* module, const char* format, va_list values) {
  char text[400];
  std::vsnprintf(text, sizeof text, format, values);
  return (module != nullptr && *module != '\0' ? std::string(module) + ": " : std::string()) + text;
}

}  // namespace

tiff_file::tiff_file(tiff_bytes& bytes, const char* mode, const std::string& name, std::uint64_t most)
    : bytes_(bytes), name_(name), damaged_(*mode == 'r' ? "is damaged: " : "") {
  const std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions*)> options(TIFFOpenOptionsAlloc(),
                                                                             TIFFOpenOptionsFree);
  constexpr auto largest = std::uint64_t(std::numeric_limits<tmsize_t>::max());
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), tmsize_t(std::min(most, largest)));
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), report, this);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), warn, this);
  const auto keep_open = [](thandle_t) { return 0; };
  tiff_.reset(TIFFClientOpenExt("", mode, this, read, write, seek, keep_open, size, nullptr, nullptr, options.get()));
  require(tiff_ != nullptr);
}

void tiff_file::require(bool worked) const {
  if (worked && failure_.empty()) return;
  if (cut_short_) throw user_error(name_ + ": the file ends before the picture does");
  throw user_error(failure_.empty() ? name_ + ": is no valid TIFF file" : failure_);
}

void tiff_file::close() {
  tiff_.reset();
  require(true);
}

void tiff_file::fail(const std::string& sentence) {
  if (failure_.empty()) failure_ = sentence;
}

tmsize_t tiff_file::read(thandle_t self, void* to, tmsize_t bytes) {
  tiff_file& file = from(self);
  try {
    const std::size_t count = file.bytes_.read(file.at_, to, std::size_t(bytes));
    if (count < std::size_t(bytes)) file.cut_short_ = true;
    file.at_ += count;
    return tmsize_t(count);
  } catch (const user_error& error) {
    file.fail(error.what());
    return -1;
  }
}

tmsize_t tiff_file::write(thandle_t self, void* data, tmsize_t bytes) {
  tiff_file& file = from(self);
  try {
    file.bytes_.write(file.at_, data, std::size_t(bytes));
    file.at_ += std::uint64_t(bytes);
    return bytes;
  } catch (const user_error& error) {
    file.fail(error.what());
    return -1;
  }
}

toff_t tiff_file::seek(thandle_t self, toff_t offset, int whence) {
  tiff_file& file = from(self);
  file.at_ = offset + (whence == SEEK_CUR ? file.at_ : whence == SEEK_END ? file.bytes_.size() : 0);
  return file.at_;
}

toff_t tiff_file::size(thandle_t self) { return from(self).bytes_.size(); }

int tiff_file::report(TIFF*, void* self, const char* module, const char* format, va_list values) {
  tiff_file& file = from(self);
  file.fail(file.name_ + ": " + file.damaged_ + formatted(module, format, values));
  return 1;  // and no other handler is asked
}

// Most warnings are about fields that do not matter. Some decoders invent what is missing and only warn.
int tiff_file::warn(TIFF*, void* self, const char* module, const char* format, va_list values) {
  tiff_file& file = from(self);
  const std::string text = formatted(module, format, values);
  const auto has = [&](const char* words) { return text.find(words) != std::string::npos; };
  if (has("remature end") || has("remature EOF")) file.fail(file.name_ + ": " + file.damaged_ + text);
  return 1;
}

}  // namespace vrk::tool
