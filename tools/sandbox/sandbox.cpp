#include "tools/sandbox/sandbox.h"

#include <cstdio>

#include "tools/pipeline/user_error.h"

#ifdef VRK_SECCOMP
#include <fcntl.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#endif

namespace vrk::tool {

void tell_without_sandbox(const char* level) {
  if (!has_sandbox()) std::fprintf(stderr, "%s: built without libseccomp: pictures are decoded unconfined\n", level);
}

#ifdef VRK_SECCOMP
namespace {

using filter = std::unique_ptr<void, decltype([](void* rules) { seccomp_release(rules); })>;

void require(int result) {
  if (result >= 0) return;
  throw user_error(std::string("the system lets no decoder be confined (seccomp): ") + std::strerror(-result));
}

void close_others(int in, int out) {
  std::array<int, 3> kept{in, out, STDERR_FILENO};
  std::ranges::sort(kept);
  unsigned first = 0;
  for (const int file : kept) {
    if (unsigned(file) > first) close_range(first, unsigned(file) - 1, 0);
    first = unsigned(file) + 1;
  }
  close_range(first, ~0U, 0);
}

void allow(const filter& rules, int call) { require(seccomp_rule_add(rules.get(), SCMP_ACT_ALLOW, call, 0)); }

// argument: number `index` of the call, of which the bits of `mask` are `value`
void allow_if(const filter& rules, int call, unsigned index, scmp_datum_t mask, scmp_datum_t value) {
  require(seccomp_rule_add(rules.get(), SCMP_ACT_ALLOW, call, 1, SCMP_CMP(index, SCMP_CMP_MASKED_EQ, mask, value)));
}

}  // namespace

bool has_sandbox() { return true; }

void confine(int in, int out) {
  close_others(in, out);
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);  // a broken picture is nothing to keep
  const filter rules(seccomp_init(SCMP_ACT_KILL_PROCESS));
  if (rules == nullptr) require(-ENOMEM);
  // qsort asks for the size of the memory: sysinfo.
  for (const int call : {SCMP_SYS(read),           SCMP_SYS(readv),         SCMP_SYS(pread64),
                         SCMP_SYS(lseek),          SCMP_SYS(_llseek),       SCMP_SYS(fstat),
                         SCMP_SYS(close),          SCMP_SYS(brk),           SCMP_SYS(munmap),
                         SCMP_SYS(mremap),         SCMP_SYS(madvise),       SCMP_SYS(futex),
                         SCMP_SYS(sched_yield),    SCMP_SYS(getrandom),     SCMP_SYS(getpid),
                         SCMP_SYS(gettid),         SCMP_SYS(clock_gettime), SCMP_SYS(gettimeofday),
                         SCMP_SYS(rt_sigprocmask), SCMP_SYS(rt_sigreturn),  SCMP_SYS(restart_syscall),
                         SCMP_SYS(sysinfo),        SCMP_SYS(exit),          SCMP_SYS(exit_group)}) {
    allow(rules, call);
  }
  constexpr scmp_datum_t all = ~scmp_datum_t{0};
  for (const int file : {out, STDERR_FILENO}) {
    allow_if(rules, SCMP_SYS(write), 0, all, scmp_datum_t(file));
    allow_if(rules, SCMP_SYS(writev), 0, all, scmp_datum_t(file));
  }
  for (const int call : {SCMP_SYS(mmap), SCMP_SYS(mprotect)}) allow_if(rules, call, 2, PROT_EXEC, 0);
  allow_if(rules, SCMP_SYS(ioctl), 1, all, FIONREAD);
  allow_if(rules, SCMP_SYS(tgkill), 0, all, scmp_datum_t(getpid()));  // abort
#ifdef __SANITIZE_ADDRESS__  // sanitizers write memory to a pipe to see whether it can be read, and ask for stacks
  for (const int call : {SCMP_SYS(pipe), SCMP_SYS(pipe2), SCMP_SYS(write), SCMP_SYS(sigaltstack)}) allow(rules, call);
#endif
  // stdio asks for the size of a file before it seeks, and does without.
  require(seccomp_rule_add(rules.get(), SCMP_ACT_ERRNO(EACCES), SCMP_SYS(newfstatat), 0));
  require(seccomp_load(rules.get()));
}

#else

bool has_sandbox() { return false; }

void confine(int, int) {
  throw user_error("--sandbox: this program was built without libseccomp (package libseccomp-dev) and cannot confine");
}

#endif

}  // namespace vrk::tool
