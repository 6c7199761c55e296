// TIFF files through libtiff: its errors are exceptions, and it prints nothing.
#pragma once

#include <tiffio.h>

#include <cstdarg>
#include <cstdint>
#include <memory>
#include <string>

namespace vrk::tool {

// What a TIFF file consists of. The functions may throw user_error.
class tiff_bytes {
 public:
  virtual ~tiff_bytes() = default;
  virtual std::uint64_t size() const = 0;
  virtual std::size_t read(std::uint64_t at, void* to, std::size_t bytes) = 0;  // how many there are
  virtual void write(std::uint64_t at, const void* data, std::size_t bytes) = 0;
};

class tiff_file {
 public:
  // bytes: stay where they are. mode: of TIFFOpen. name: for messages. most: bytes that the library may take at a time.
  tiff_file(tiff_bytes& bytes, const char* mode, const std::string& name, std::uint64_t most);
  tiff_file(const tiff_file&) = delete;
  tiff_file& operator=(const tiff_file&) = delete;

  TIFF* get() const { return tiff_.get(); }

  // Throws user_error when the library has failed, or has found damage and gone on.
  void require(bool worked) const;

  // Whether data were missing at the end of the file.
  bool cut_short() const { return cut_short_; }

  void forget_failure() { failure_.clear(); }

  // Writes what is not written yet.
  void close();

 private:
  struct release {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
  };

  static tmsize_t read(thandle_t self, void* to, tmsize_t bytes);
  static tmsize_t write(thandle_t self, void* data, tmsize_t bytes);
  static toff_t seek(thandle_t self, toff_t offset, int from);
  static toff_t size(thandle_t self);
  static int report(TIFF*, void* self, const char* module, const char* format, va_list values);
  static int warn(TIFF*, void* self, const char* module, const char* format, va_list values);

  void fail(const std::string& sentence);

  tiff_bytes& bytes_;
  std::string name_;
  const char* damaged_;  // between the name and what the library says
  std::uint64_t at_ = 0;
  std::string failure_;  // the first one; empty: none
  bool cut_short_ = false;
  std::unique_ptr<TIFF, release> tiff_;
};

}  // namespace vrk::tool
