// Plane orders of the halftone tables.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace vrk::kit {

// Pixels, outputs and records hold the planes in record order: K, C, M, Y, fifth, sixth. The tables "edpr" and "dith"
// list them in table order: C, M, Y, K, fifth, sixth. Entry p is the table position of plane p of the record order.
inline constexpr std::array<std::size_t, 6> table_position{3, 0, 1, 2, 4, 5};

// What people call the planes, in table order.
inline constexpr std::array<std::string_view, 6> table_plane_names{"C", "M", "Y", "K", "fifth", "sixth"};

// Six planes given in record order, in table order.
template <class Plane>
std::array<Plane, 6> in_table_order(const std::array<Plane, 6>& record_order) {
  std::array<Plane, 6> planes{};
  for (std::size_t p = 0; p < planes.size(); ++p) planes[table_position[p]] = record_order[p];
  return planes;
}

}  // namespace vrk::kit
