// The works that are measured: a stage, or several, on lines of a picture.
#pragma once

#include <optional>

#include "bench/paired/in_turns.h"
#include "bench/paired/inputs.h"
#include "bench/paired/library.h"
#include "kit/presets.h"

namespace vrk::bench {

// Which row of its family serves a handle. Other builds of the library have but the one that creation chooses.
enum class rows {
  chosen,   // by creation, on this processor
  sse41,    // by creation, where the processor has no more than that
  base,     // by creation, where it has neither SSE4.1 nor AVX2
  defined,  // the row that serves every table and run
};
inline constexpr rows all_rows[] = {rows::chosen, rows::sse41, rows::base, rows::defined};
const char* name_of(rows choice);

struct work {
  std::string name;
  // Nothing where the processor, or the library, has no such row.
  std::function<std::optional<candidate>(const library&, rows, const input&, unsigned width)> candidate_for;
};

struct conversion {
  unsigned channels = 3;    // 3: first converter; 4, 6: inks of the second one
  std::uint32_t flags = 0;  // widths
  bool gray = false;
  unsigned points = 17;
  unsigned layout = 0;
  bool masked = false;
  bool bounded = true;  // a grid that the fast rows serve
};
work conversion_work(const std::string& name, const conversion& job);

work diffusion_work(const std::string& name, unsigned planes, std::uint32_t flags, const kit::edpr_table& params);
work dither_work(const std::string& name, unsigned planes, std::uint32_t flags, const kit::dither_table& table);
work curves_work(const std::string& name, unsigned planes = 4, std::uint32_t flags = 0);
work preprocessor_creation_work(const std::string& name);
work preprocessor_work(const std::string& name, std::uint32_t flags);

// RGB to four packed planes: the second converter, then error diffusion at 8-10 bits.
work page_work(const std::string& name);

}  // namespace vrk::bench
