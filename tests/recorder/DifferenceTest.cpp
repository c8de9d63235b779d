#include <gtest/gtest.h>

#include "recorder/Difference.h"

using recorder::Difference;
using Lines = std::vector<std::string>;

TEST(ADifference, IsEmptyForTheSameLines) {
  EXPECT_EQ(Difference({}, {}), Lines());
  EXPECT_EQ(Difference({"a", "b"}, {"a", "b"}), Lines());
}

TEST(ADifference, TellsMissingExtraAndChangedLinesInTheirPlace) {
  EXPECT_EQ(Difference({"a", "b", "c"}, {"a", "c"}), (Lines{"  a", "- b", "  c"}));
  EXPECT_EQ(Difference({"a", "c"}, {"a", "b", "c"}), (Lines{"  a", "+ b", "  c"}));
  EXPECT_EQ(Difference({"a", "b", "c"}, {"a", "x", "c"}), (Lines{"  a", "- b", "+ x", "  c"}));
  EXPECT_EQ(Difference({}, {"a"}), (Lines{"+ a"}));
}

TEST(ADifference, LeavesOutWhatIsFarFromIt) {
  EXPECT_EQ(Difference({"1", "2", "3", "4", "a", "5", "6", "7"}, {"1", "2", "3", "4", "5", "6", "7"}),
            (Lines{"  ...", "  3", "  4", "- a", "  5", "  6", "  ..."}));
}

TEST(ADifference, OfVeryLongRequestsIsAllOfThem) {
  const Lines left(3000, "a");
  const Lines right(3000, "b");
  EXPECT_EQ(Difference(left, right).size(), 6000u);
}
