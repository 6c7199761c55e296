// Handle memory is handed out piece by piece: size rules have room for every piece, and a wrong one must not cost more
// than the handle.
#include "base/carver.h"

#include <gtest/gtest.h>

#include "base/ref.h"
#include "tests/guard.h"

namespace {

using namespace vrk;
using vrk::test::fenced_block;

TEST(carver, pieces_that_do_not_fit_are_empty) {
  fenced_block mem(64, 0);
  carver block(mem.data(), 64);
  EXPECT_EQ(block.section<u8>(33).size(), 33u);
  EXPECT_TRUE(block.ok());
  EXPECT_TRUE(block.section<u8>(1).empty()) << "the gap takes the rest";
  EXPECT_FALSE(block.ok());
  EXPECT_TRUE(block.take<u8>(1).empty()) << "once a piece was missing, there are no others";
  EXPECT_EQ(block.used(), 33u);
  EXPECT_TRUE(mem.fences_intact());
}

TEST(carver, gaps_and_records_that_do_not_fit_leave_the_memory_behind_alone) {
  fenced_block mem(40, 0);
  carver block(mem.data(), 40);
  EXPECT_EQ(block.take<u8>(33).size(), 33u);
  EXPECT_EQ(block.section<u8>(0).data(), nullptr);
  EXPECT_FALSE(block.ok());
  carver small(mem.data(), 7);
  EXPECT_EQ(small.record<u64>(), nullptr);
  EXPECT_FALSE(small.ok());
  EXPECT_TRUE(mem.fences_intact());
}

TEST(carver, refs_refer_to_nothing_again) {
  struct {
    ref<u8> to;
    u8 at[2];
  } record{};
  record.to = &record.at[1];
  EXPECT_EQ(record.to.get(), &record.at[1]);
  record.to = nullptr;
  EXPECT_FALSE(record.to);
  EXPECT_EQ(record.to.get(), nullptr);
}

}  // namespace
