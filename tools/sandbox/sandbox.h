// Confinement of the process that decodes pictures, by a filter of its system calls.
#pragma once

namespace vrk::tool {

// Whether this build can confine: it needs libseccomp, and so Linux.
bool has_sandbox();

// Says on standard error, in the form "LEVEL: ...", that pictures are decoded without a sandbox, where this build has
// none.
void tell_without_sandbox(const char* level);

// From here on this process, which has one thread, may take and give back memory, read files that are open, write to
// `out` and to standard error, and end. Another system call ends it by SIGSYS. Files other than `in`, `out` and
// standard error are closed. Throws user_error when the system, or this build, cannot do that.
void confine(int in, int out);

}  // namespace vrk::tool
