// The parameter blob "CTSI": variants of one kind of table under four-character tags.
#pragma once

#include <optional>
#include <string>

#include "kit/bytes.h"

namespace vrk::kit {

struct blob_entry {
  std::string tag{};  // four characters, blanks at the end where shorter
  bytes data{};
  std::optional<std::uint32_t> offset{}, length{};  // as the data lie in the blob, unless set
};

struct blob {
  std::string magic = "CTSI";
  std::string type = "CS2T";  // "CS1T", "CS2T", "HATT", "INGM", "OTGM", "HRKT"
  std::string version = "0010";
  char class_code = ' ';  // 'C' switches some choices of the converter look-ups
  unsigned end_mark = 0x1A;
  std::optional<unsigned> entry_count{};
  std::vector<blob_entry> entries{};  // directory order; the data follow in the same order

  bytes encode() const;
};

}  // namespace vrk::kit
