#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

#include "softcard/tables/HashMap.h"
#include "softcard/tables/Sorted.h"

namespace {

using softcard::HashMap;
using softcard::Sorted;

std::map<int, std::string> Copied(const HashMap<int, std::string>& rows) {
  std::map<int, std::string> copied;
  for (const auto& [key, row] : rows) EXPECT_TRUE(copied.emplace(key, row).second) << key << " comes twice";
  return copied;
}

TEST(HashMapTest, HoldsWhatAnOrderedMapHolds) {
  std::seed_seq seed{11};
  std::mt19937 random(seed);
  HashMap<int, std::string> rows;
  std::map<int, std::string> ordered;
  for (int i = 0; i < 20000; ++i) {
    const int wanted = 1 + i / 100 % 100;  // it fills and empties again and again
    const int key = static_cast<int>(random() % 200) - 100;
    if (static_cast<int>(ordered.size()) < wanted) {
      const auto [row, is_new] = rows.Insert(key, std::to_string(i));
      EXPECT_EQ(is_new, ordered.emplace(key, std::to_string(i)).second);
      EXPECT_EQ(*row, ordered[key]);
    } else {
      EXPECT_EQ(rows.Erase(key), ordered.erase(key) == 1);
    }
    ASSERT_EQ(rows.size(), ordered.size());
    ASSERT_EQ(rows.empty(), ordered.empty());
    for (int other = -100; other < 100; ++other) ASSERT_EQ(rows.Find(other) != nullptr, ordered.count(other) == 1);
  }
  EXPECT_EQ(Copied(rows), ordered);
  auto expected = ordered.begin();
  for (const auto& [key, row] : Sorted(rows)) EXPECT_EQ(key, (expected++)->first);
}

TEST(HashMapTest, ACopyHasRowsOfItsOwn) {
  HashMap<int, std::string> rows;
  for (int key = 0; key < 50; ++key) rows[key] = "before";
  HashMap<int, std::string> copy = rows;
  rows[7] = "after";
  rows.Erase(8);
  EXPECT_EQ(*copy.Find(7), "before");
  EXPECT_EQ(*copy.Find(8), "before");
  copy = rows;
  EXPECT_EQ(*copy.Find(7), "after");
  EXPECT_EQ(copy.Find(8), nullptr);
  EXPECT_EQ(copy.size(), 49U);
  EXPECT_EQ(Copied(copy), Copied(rows));
}

TEST(HashMapTest, RowsStayWhereTheyAreWhileOthersComeAndGo) {
  HashMap<int, std::string> rows;
  const std::string* const row = rows.Insert(77, "row").first;
  for (int key = 100; key < 1000; ++key) rows[key] = "other";
  for (int key = 100; key < 900; ++key) rows.Erase(key);
  EXPECT_EQ(rows.Find(77), row);
}

}  // namespace
