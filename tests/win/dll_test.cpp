#include <gtest/gtest.h>

#include <future>
#include <string>
#include <thread>
#include <tuple>
#include <type_traits>

#include "tests/every_export.h"
#include "tests/win/allocation_watch.h"
#include "tests/win/by_name.h"

namespace {

using namespace vrk;

// The stubs of by_name.S look at every call; this brings all exports there, at every alignment of the stack.
TEST(dll, exports_remove_their_arguments_whatever_the_stack_alignment) {
  for (const by_name_export& e : by_name_exports) EXPECT_NE(e.address, nullptr) << e.name;
  for (const std::uint32_t skew : {0u, 4u, 8u, 12u}) {
    by_name_skew = skew;
    const auto call = [](const char*, auto* function, auto... arguments) { return function(arguments...); };
    EXPECT_EQ(test::call_every_export(call), 0);
  }
  by_name_skew = 4;
  for (const by_name_export& e : by_name_exports) EXPECT_GE(e.calls, 4u) << e.name;
}

// One job of every export of `dll`, on the running thread.
struct watched_job {
  int failed = 0, allocations = 0;
  std::vector<std::uint8_t> first_line;  // of plane K from error diffusion, whose codes hang on the thread's generator

  explicit watched_job(HMODULE dll) {
    test::allocation_watch watch;
    failed = test::call_every_export([&](const char* name, auto* function, auto... arguments) {
      const auto loaded = reinterpret_cast<decltype(function)>(reinterpret_cast<void*>(GetProcAddress(dll, name)));
      if constexpr (std::is_same_v<decltype(function), decltype(&vrk_exec_ed)>) {
        const auto result = watched_call(loaded, arguments...);
        const std::uint8_t* const line = std::get<2>(std::tuple(arguments...));
        if (first_line.empty()) first_line.assign(line, line + 12);
        return result;
      } else {
        return watched_call(loaded, arguments...);
      }
    });
    allocations = watch.count();
  }

 private:
  static auto watched_call(auto* function, auto... arguments) {
    const test::allocation_watch::scope watched;
    return function(arguments...);
  }
};

TEST(dll, no_export_allocates_on_threads_older_or_newer_than_the_dll) {
  std::promise<HMODULE> loaded;
  auto older = std::async(std::launch::async, [&] { return watched_job(loaded.get_future().get()); });

  char path[MAX_PATH];
  GetModuleFileNameA(GetModuleHandleA("vrk.dll"), path, sizeof path);
  const std::string another = std::string(path) + ".another.dll";  // loaded while the process runs
  ASSERT_TRUE(CopyFileA(path, another.c_str(), FALSE));
  const HMODULE dll = LoadLibraryA(another.c_str());
  ASSERT_NE(dll, nullptr);
  loaded.set_value(dll);

  const watched_job on_older = older.get(), here(dll), again(dll);
  const watched_job on_newer = std::async(std::launch::async, [&] { return watched_job(dll); }).get();
  for (const watched_job* job : {&on_older, &here, &again, &on_newer}) {
    EXPECT_EQ(job->failed, 0);
    EXPECT_EQ(job->allocations, 0);
  }
  EXPECT_EQ(on_older.first_line, here.first_line);  // a generator of its own on every thread
  EXPECT_EQ(on_newer.first_line, here.first_line);
  EXPECT_NE(again.first_line, here.first_line);
  EXPECT_TRUE(FreeLibrary(dll));
  DeleteFileA(another.c_str());
}

TEST(dll, the_watch_sees_an_allocation) {
  test::allocation_watch watch;
  {
    const test::allocation_watch::scope watched;
    HeapFree(GetProcessHeap(), 0, HeapAlloc(GetProcessHeap(), 0, 100));
  }
  EXPECT_EQ(watch.count(), 1);
}

TEST(dll, tables_do_not_hang_on_the_floating_point_control_word) {
  const std::int16_t balance[] = {3, -2, 1};
  std::vector<std::uint32_t> mem(4096);
  const auto built_under = [&](std::uint16_t control_word) {
    std::uint16_t before;
    asm volatile("fnstcw %0; fldcw %1" : "=m"(before) : "m"(control_word));
    EXPECT_NE(vrk_create_preproc(balance, 2, 3, 0, nullptr, 0, nullptr, VRK_MID10, mem.data()), 0u);
    asm volatile("fldcw %0" : : "m"(before));
    return mem;
  };
  const auto tables = built_under(0x27F);  // doubles of 53 bits, as Windows starts threads
  EXPECT_EQ(built_under(0x37F), tables);   // 64 bits
  EXPECT_EQ(built_under(0x07F), tables);   // 24 bits, as 3-D graphics leaves it
}

}  // namespace
