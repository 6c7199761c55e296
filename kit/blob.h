// The parameter blob "CTSI": variants of one kind of table, found by four-character tags.
#pragma once

#include <optional>
#include <string>

#include "kit/bytes.h"

namespace vrk::kit {

inline constexpr std::size_t blob_header_bytes = 40;  // the directory follows, then the data
inline constexpr std::size_t blob_entry_bytes = 12;   // tag, offset and length of the data

struct blob_entry {
  std::string tag{};  // four characters; a shorter tag is filled up with blanks
  bytes data{};
  std::optional<std::uint32_t> offset{}, length{};  // unless set, those of the data in the blob
};

struct blob {
  std::string magic = "CTSI";
  std::string type = "CS2T";  // "CS1T", "CS2T", "HATT", "INGM", "OTGM", "HRKT"
  std::string version = "0010";
  char class_code = ' ';  // with 'C' the converter look-ups choose some tags differently
  unsigned end_mark = 0x1A;
  std::optional<unsigned> entry_count{};
  std::vector<blob_entry> entries{};  // directory order; the data follow in the same order

  bytes encode() const;
};

}  // namespace vrk::kit
