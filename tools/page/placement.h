// Where a picture lies on the page, in numbers.
#pragma once

#include <optional>
#include <string>

#include "tools/image/orientation.h"
#include "tools/image/resolution.h"
#include "tools/page/paper.h"

namespace vrk::tool {

struct page_options {
  std::optional<resolution> dpi{};    // pixels of the page on an inch; usual_dpi unless given
  std::optional<paper_size> paper{};  // the picture's own size unless given
  bool fill = false;  // cover the paper and cut off what is too long, rather than show all and leave margins
  std::optional<unsigned> quarter_turns{};  // clockwise, 0 ... 3; as the paper asks for unless given
  bool as_stored = false;                   // ignore the orientation that the file asks for
};

inline constexpr resolution usual_dpi{600, 600};

// What is placed: a picture as its file has it.
struct placed_picture {
  unsigned width, height;  // pixels
  std::optional<resolution> dpi;
  orientation seen;
};

// All but `turn` in terms of the turned picture.
struct placement {
  orientation turn;                   // of the file's picture
  unsigned page_width, page_height;   // pixels of the page
  unsigned left, top, width, height;  // where the picture lies on it
  double part_left, part_top;         // what is seen there, in pixels of the picture
  double part_width, part_height;
  bool resampled;  // false: a pixel of the picture is a pixel of the page
};

// A picture without a resolution counts as being of the page's own, the finer where that differs across and down.
// Without a paper the page is the picture. Throws user_error, with `name` in front, when a picture's own
// resolution makes a side of it longer than longest_paper.
placement place(const placed_picture& picture, const page_options& options, const std::string& name);

}  // namespace vrk::tool
