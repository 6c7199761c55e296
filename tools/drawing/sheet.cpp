#include "tools/drawing/sheet.h"

#include <algorithm>

namespace vrk::tool {
namespace {

constexpr unsigned columns = 4, margin = 24, header = 84, label = 26;  // all but the first in pixels

}  // namespace

sheet::sheet(std::size_t cells, unsigned width, unsigned height)
    : width_(width),
      height_(height),
      picture_(margin + unsigned(std::clamp<std::size_t>(cells, 2, columns)) * (width + margin),
               header + unsigned((cells + columns - 1) / columns) * (label + height + margin)) {}

void sheet::title(std::string_view text, std::string_view more) {
  picture_.write(text, margin, 38, 15);
  picture_.write(more, margin, 64, 10, faint_text);
}

sheet::place sheet::add(std::string_view name, std::string_view remark) {
  const unsigned left = margin + next_ % columns * (width_ + margin);
  const unsigned top = header + next_ / columns * (label + height_ + margin);
  ++next_;
  picture_.write(name, left, top + 15, 12);
  picture_.write(remark, left + width_, top + 15, 8, faint_text, canvas::align::right);
  return {left, top + label};
}

}  // namespace vrk::tool
