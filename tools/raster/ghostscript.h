// PDF and PostScript, drawn by Ghostscript where it is installed.
#pragma once

#include <optional>
#include <string>

#include "tools/files/spool.h"
#include "tools/image/picture_input.h"
#include "tools/image/resolution.h"
#include "tools/processes/child_process.h"

namespace vrk::tool {

constexpr bool begins_document(int first, int second) { return first == '%' && (second == 'P' || second == '!'); }

class ghostscript {
 public:
  // Starts it: a process without a shell, which may read this document and temporary files, but nothing else of the
  // user's. Throws user_error when it is not installed.
  ghostscript(picture_input document, resolution dpi);

  // What it draws: CUPS raster in sRGB. To be taken once.
  input_file take_pages() { return std::move(pages_); }

  // Waits for its end, after the last of its bytes. pages: that came. Throws user_error, with what it said, when it has
  // failed; warns on standard error when it has found errors and gone on.
  void check_end(unsigned pages);

 private:
  std::string complaint() const;  // empty when it said nothing about errors

  std::string name_;
  input_file document_, pages_;
  std::optional<spool> spooled_;  // a document that comes through a pipe: Ghostscript reads at any place
  spool said_;
  child_process drawing_;
};

}  // namespace vrk::tool
