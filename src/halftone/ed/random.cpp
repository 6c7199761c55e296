#include "halftone/ed/random.h"

namespace vrk {

namespace {

// Initial-exec: the state lies in the block that a thread gets at its start, so that no first use of it allocates.
#ifdef __ELF__
[[gnu::tls_model("initial-exec")]]
#endif
constinit thread_local u32 state = 1;

}  // namespace

u32& random_state() { return state; }

}  // namespace vrk
