// A titled picture of labelled cells, at most four in a row.
#pragma once

#include "tools/drawing/canvas.h"

namespace vrk::tool {

class sheet {
 public:
  // width, height: of the content of a cell, without its label
  sheet(std::size_t cells, unsigned width, unsigned height);

  void title(std::string_view text, std::string_view more);

  // Labels the next cell: the name on the left, a remark on the right. Returns where the content of the cell begins.
  struct place {
    unsigned left, top;
  };
  place add(std::string_view name, std::string_view remark);

  canvas& picture() { return picture_; }

 private:
  unsigned width_, height_;
  unsigned next_ = 0;
  canvas picture_;
};

}  // namespace vrk::tool
