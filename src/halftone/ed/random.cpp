#include "halftone/ed/random.h"

namespace vrk {

#ifdef _WIN32

// The compiler's own thread-local variables allocate at a thread's first use here. So the DLL carries the table by
// which the loader itself makes thread-local variables, before any code of the thread runs: it gives the DLL an index,
// and every thread, also one older than the DLL, a copy of the initial value in the block of that index.
namespace {

constexpr u32 initial_state = 1;
constinit u32 block_index = 0;  // written by the loader

struct tls_directory {
  const u32 *first, *end;  // the initial value
  u32* index;
  const void* callbacks;
  u32 zero_bytes, characteristics;
};
static_assert(sizeof(tls_directory) == 24);

}  // namespace

extern "C" const tls_directory _tls_used;  // the name by which the linker finds it
const tls_directory _tls_used{&initial_state, &initial_state + 1, &block_index, nullptr, 0, 0};

u32& random_state() {
  u32** blocks;  // of the running thread
  asm("movl %%fs:0x2c, %0" : "=r"(blocks));
  return *blocks[block_index];
}

#else

namespace {

// Initial-exec: the state lies in the block that a thread gets at its start, so that no first use of it allocates.
#ifdef __ELF__
[[gnu::tls_model("initial-exec")]]
#endif
constinit thread_local u32 state = 1;

}  // namespace

u32& random_state() { return state; }

#endif

}  // namespace vrk
