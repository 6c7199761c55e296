// Kernels of the higher levels stand in files of their own, between VRK_BEGIN_LEVEL and VRK_END_LEVEL and in a
// namespace of their level. What stands before is compiled for the base level, whichever kernel it goes into, so the
// linker, which keeps one copy of an inline function, cannot keep one that some processor does not understand. No
// lambdas in between: not every compiler compiles these for the level of the function around them.
#pragma once

#if defined(__x86_64__) || defined(__i386__)
#define VRK_HAS_LEVELS 1
#define VRK_PRAGMA(text) _Pragma(#text)
#ifdef __clang__
#define VRK_BEGIN_LEVEL(features) \
  VRK_PRAGMA(clang attribute push(__attribute__((target(features))), apply_to = function))
#define VRK_END_LEVEL VRK_PRAGMA(clang attribute pop)
#else
#define VRK_BEGIN_LEVEL(features) VRK_PRAGMA(GCC push_options) VRK_PRAGMA(GCC target(features))
#define VRK_END_LEVEL VRK_PRAGMA(GCC pop_options)
#endif
#endif
