#include <gtest/gtest.h>

#include <limits>

#include "softcard/tables/IdTable.h"

namespace {

using softcard::IdTable;

constexpr int kLast = std::numeric_limits<int>::max();

TEST(IdTableTest, AfterTheLastIdTheFirstFreeOneComesAgain) {
  IdTable<int> table(kLast - 3, 4);
  EXPECT_EQ(table.Add(0), kLast - 3);
  EXPECT_EQ(table.Add(0), kLast - 2);
  EXPECT_EQ(table.Add(0), kLast - 1);
  table.Delete(kLast - 2);
  EXPECT_EQ(table.Add(0), kLast);
  EXPECT_EQ(table.Add(0), kLast - 2);
  EXPECT_EQ(table.Add(0), BCM_E_FULL);
}

TEST(IdTableTest, RowsStayWhereTheyAreWhileOthersComeAndGo) {
  IdTable<int> table(1, 1000);
  int* const row = table.Find(table.Add(77));
  for (int i = 0; i < 500; ++i) table.Add(i);
  for (int id = 2; id < 400; ++id) table.Delete(id);
  EXPECT_EQ(table.Find(1), row);
  EXPECT_EQ(*row, 77);
}

TEST(IdTableTest, ATableOfSizeZeroIsAlwaysFull) { EXPECT_EQ(IdTable<int>(1, 0).Add(0), BCM_E_FULL); }

}  // namespace
