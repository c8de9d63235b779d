#include <gtest/gtest.h>

#include "scenario/Difference.h"

namespace scenario {

using Lines = std::vector<std::string>;

TEST(Difference, MatchWantsEveryLineInItsPlace) {
  EXPECT_TRUE(Match({"a*", "b"}, {"ax", "b"}));
  EXPECT_FALSE(Match({"a"}, {"a", "b"}));
  EXPECT_FALSE(Match({"a", "b"}, {"b", "a"}));
}

TEST(Difference, ShowsWhatHasToGoAndToComeAroundWhatIsInBoth) {
  EXPECT_EQ(Difference({"a", "b*", "d"}, {"a", "bx", "c", "d"}), (Lines{"  a", "  bx", "+ c", "  d"}));
  EXPECT_EQ(Difference({"a", "b"}, {"b", "a"}), (Lines{"- a", "  b", "+ a"}));
  EXPECT_EQ(Difference({"a"}, {}), (Lines{"- a"}));
  EXPECT_EQ(Difference({}, {"a"}), (Lines{"+ a"}));
}

TEST(Difference, StaysQuickForMoreLinesThanAnyoneReads) {
  const Lines expected(5000, "a");
  const Lines found(5000, "b");
  EXPECT_EQ(Difference(expected, found).size(), 10000u);
}

}  // namespace scenario
