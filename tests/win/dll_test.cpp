#include <gtest/gtest.h>

#include <future>
#include <string>
#include <thread>
#include <tuple>
#include <type_traits>

#include "tests/every_export.h"
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

// One job of every export of `dll`, on the running thread. The result is the first line of plane K from error
// diffusion, whose codes hang on the thread's generator.
std::vector<std::uint8_t> first_line(HMODULE dll) {
  std::vector<std::uint8_t> line;
  const int failed = test::call_every_export([&](const char* name, auto* function, auto... arguments) {
    const auto loaded = reinterpret_cast<decltype(function)>(reinterpret_cast<void*>(GetProcAddress(dll, name)));
    if constexpr (std::is_same_v<decltype(function), decltype(&vrk_exec_ed)>) {
      const auto result = loaded(arguments...);
      const std::uint8_t* const written = std::get<2>(std::tuple(arguments...));
      if (line.empty()) line.assign(written, written + 12);
      return result;
    } else {
      return loaded(arguments...);
    }
  });
  EXPECT_EQ(failed, 0);
  return line;
}

TEST(dll, every_thread_older_or_newer_than_the_dll_has_a_generator_of_its_own) {
  std::promise<HMODULE> loaded;
  auto older = std::async(std::launch::async, [&] { return first_line(loaded.get_future().get()); });

  char path[MAX_PATH];
  GetModuleFileNameA(GetModuleHandleA("vrk.dll"), path, sizeof path);
  const std::string another = std::string(path) + ".another.dll";  // loaded while the process runs
  ASSERT_TRUE(CopyFileA(path, another.c_str(), FALSE));
  const HMODULE dll = LoadLibraryA(another.c_str());
  ASSERT_NE(dll, nullptr);
  loaded.set_value(dll);

  const auto here = first_line(dll);
  EXPECT_EQ(older.get(), here);
  EXPECT_EQ(std::async(std::launch::async, [&] { return first_line(dll); }).get(), here);
  EXPECT_NE(first_line(dll), here);
  EXPECT_TRUE(FreeLibrary(dll));
  DeleteFileA(another.c_str());
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
