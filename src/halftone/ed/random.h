// The library's pseudo-random generator, the one piece of state outside the handles.
#pragma once

#include "base/integers.h"

namespace vrk {

// The calling thread's state; 1 when the thread has not drawn yet. A line takes it into a local and puts it back.
u32& random_state();

// The next value, 0 ... 32767.
inline u32 draw_random(u32& state) {
  state = state * 214013 + 2531011;
  return state >> 16 & 0x7FFF;
}

}  // namespace vrk
