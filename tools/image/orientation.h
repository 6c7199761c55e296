// Quarter turns and mirror images.
#pragma once

namespace vrk::tool {

// Where a pixel that is seen lies in the stored picture: its coordinates are exchanged, then counted from the far side.
struct orientation {
  bool exchanged = false;    // columns are seen as lines
  bool from_right = false;   // stored columns count from the right
  bool from_bottom = false;  // stored lines count from the bottom

  bool operator==(const orientation&) const = default;

  // Seen after another quarter turn clockwise.
  constexpr orientation turned() const {
    return exchanged ? orientation{false, !from_right, from_bottom} : orientation{true, from_right, !from_bottom};
  }
};

// By the number that EXIF's tag "Orientation" has (1 ... 8); others count as 1, upright.
constexpr orientation exif_orientation(unsigned number) {
  constexpr orientation upright{};
  switch (number) {
    case 2:
      return {false, true, false};
    case 3:
      return upright.turned().turned();
    case 4:
      return {false, false, true};
    case 5:
      return {true, false, false};
    case 6:
      return upright.turned();
    case 7:
      return {true, true, true};
    case 8:
      return upright.turned().turned().turned();
    default:
      return upright;
  }
}

}  // namespace vrk::tool
