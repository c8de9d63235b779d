#include <gtest/gtest.h>

#include <cstdint>

#include "softcard/tables/BlockPool.h"

namespace softcard {
namespace {

TEST(BlockPool, ALargeOneBeginsAtALargePageAndKeepsWhatSmallerOnesHeld) {
  constexpr std::size_t kPage = LargePages<uint32_t>::kPage;
  BlockPool<uint32_t> pool;
  constexpr uint32_t kBlocks = 2 * kPage / sizeof(uint32_t);
  for (uint32_t value = 0; value < kBlocks; ++value) ASSERT_EQ(pool.Insert(0, 0, 0, value), value);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(&pool[0]) % kPage, 0U);
  for (uint32_t value = 0; value < kBlocks; ++value) ASSERT_EQ(pool[value], value);
}

}  // namespace
}  // namespace softcard
