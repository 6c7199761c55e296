// What TBB promises about the steps of a pipeline, told to the thread sanitizer, which cannot see into TBB's library.
#pragma once

#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

namespace vrk::tool {

// What was done before handed_over(at) has happened before what follows taken_over(at).
#ifdef __SANITIZE_THREAD__
inline void handed_over(void* at) { __tsan_release(at); }
inline void taken_over(void* at) { __tsan_acquire(at); }
#else
inline void handed_over(void*) {}
inline void taken_over(void*) {}
#endif

// As long as it lives, nobody else works at what is at the address: a band, or all that a step keeps from band to band.
class in_order {
 public:
  explicit in_order(void* at) : at_(at) { taken_over(at_); }
  ~in_order() { handed_over(at_); }
  in_order(const in_order&) = delete;
  in_order& operator=(const in_order&) = delete;

 private:
  void* at_;
};

}  // namespace vrk::tool
