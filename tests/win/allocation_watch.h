// Counts the calls that make allocations in this process: breakpoints on the functions of the system through which all
// heaps take memory.
#pragma once

#include <windows.h>

#include <array>
#include <atomic>

namespace vrk::test {

class allocation_watch {
 public:
  allocation_watch() {
    const HMODULE system = GetModuleHandleA("ntdll.dll");
    const char* const names[] = {"RtlAllocateHeap", "RtlReAllocateHeap", "NtAllocateVirtualMemory"};
    for (std::size_t i = 0; i < points_.size(); ++i) {
      DWORD before;
      points_[i].at = reinterpret_cast<volatile BYTE*>(GetProcAddress(system, names[i]));
      points_[i].code = *points_[i].at;
      VirtualProtect(const_cast<BYTE*>(points_[i].at), 1, PAGE_EXECUTE_READWRITE, &before);
    }
    count_ = 0;
    handler_ = AddVectoredExceptionHandler(1, &hit);
  }
  ~allocation_watch() { RemoveVectoredExceptionHandler(handler_); }
  allocation_watch(const allocation_watch&) = delete;
  allocation_watch& operator=(const allocation_watch&) = delete;

  // Everything between its construction and its end is watched, on all threads. A function is counted once.
  struct scope {
    scope() { set_all(breakpoint); }
    ~scope() {
      for (const point& p : points_) *p.at = p.code;
    }
  };

  int count() const { return count_; }

 private:
  struct point {
    volatile BYTE* at;
    BYTE code;  // what stands there without the breakpoint
  };
  static constexpr BYTE breakpoint = 0xCC;

  static void set_all(BYTE code) {
    for (const point& p : points_) *p.at = code;
  }

  static LONG CALLBACK hit(EXCEPTION_POINTERS* exception) {
    for (const point& p : points_) {
      if (exception->ExceptionRecord->ExceptionAddress != p.at) continue;
      ++count_;
      *p.at = p.code;
      exception->ContextRecord->Eip = reinterpret_cast<DWORD>(p.at);
      return EXCEPTION_CONTINUE_EXECUTION;
    }
    return EXCEPTION_CONTINUE_SEARCH;
  }

  static inline std::array<point, 3> points_;
  static inline std::atomic<int> count_;
  void* handler_;
};

}  // namespace vrk::test
