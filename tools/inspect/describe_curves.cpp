#include <algorithm>

#include "kit/inspect.h"
#include "kit/read_tables.h"
#include "tools/command_line/printable.h"
#include "tools/inspect/curves.h"
#include "tools/inspect/description.h"

namespace vrk::tool {
namespace {

std::vector<std::string> names_of(std::size_t curves) {
  switch (curves) {
    case 3:
      return {"R", "G", "B"};
    case 4:
      return {"C", "M", "Y", "K"};
    case 6:
      return {"C", "fifth", "M", "sixth", "Y", "K"};
    default:
      return {"all"};
  }
}

std::string course(const kit::curve& c) {
  if (c.front() == c.back() && std::equal(c.begin() + 1, c.end(), c.begin())) return "constant";
  if (std::is_sorted(c.begin(), c.end())) return "rises";
  if (std::is_sorted(c.rbegin(), c.rend())) return "falls";
  const auto down = std::is_sorted_until(c.begin(), c.end()),
             up = std::is_sorted_until(c.begin(), c.end(), std::greater());
  const bool first_rises = down - c.begin() > up - c.begin();
  return std::string(first_rises ? "rises" : "falls") + " and turns after entry " +
         std::to_string((first_rises ? down : up) - c.begin() - 1);
}

unsigned largest_step(const kit::curve& c) {
  int largest = 0;
  for (std::size_t i = 1; i < c.size(); ++i) largest = std::max(largest, std::abs(c[i] - c[i - 1]));
  return unsigned(largest);
}

}  // namespace

named_curves read_curves(const table& image) {
  const unsigned counted = kit::curve_count(image.image);
  const unsigned held = counted == 4 ? kit::planes_made(image.image, 4) : counted;  // 4 planes may become 6
  named_curves read{kit::read_curve_image(image.image, held), {}};
  read.names = names_of(read.image.curves.size());
  return read;
}

tree describe_curves(const table& image) {
  const named_curves read = read_curves(image);
  tree told{{"version", printable(read.image.version)},
            {"curve count", *read.image.curve_count},
            {"output count", read.image.output_count},
            {"entries of a curve", read.image.entries}};
  for (std::size_t c = 0; c < read.names.size(); ++c) {
    const kit::curve& curve = read.image.curves[c];
    told["curves"].push_back({{"of", read.names[c]},
                              {"course", course(curve)},
                              {"from", curve.front()},
                              {"to", curve.back()},
                              {"largest step", largest_step(curve)},
                              {"values", curve}});
  }
  return told;
}

}  // namespace vrk::tool
