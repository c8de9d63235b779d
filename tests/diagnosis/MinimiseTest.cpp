#include <gtest/gtest.h>

#include <algorithm>

#include "diagnosis/Minimise.h"

namespace {

using Kept = std::vector<std::size_t>;

bool Holds(const Kept& kept, std::size_t what) { return std::count(kept.begin(), kept.end(), what) > 0; }

}  // namespace

TEST(Minimising, KeepsWhatIsNeededInItsOrder) {
  const auto minimised = diagnosis::Minimise(
      100, 1000, [](const Kept& kept) { return Holds(kept, 3) && Holds(kept, 50) && Holds(kept, 99); });
  EXPECT_EQ(minimised.kept, (Kept{3, 50, 99}));
  EXPECT_TRUE(minimised.is_minimal);
}

TEST(Minimising, KeepsNothingWhenNothingIsNeeded) {
  const auto minimised = diagnosis::Minimise(100, 1000, [](const Kept&) { return true; });
  EXPECT_EQ(minimised.kept, Kept{});
  EXPECT_EQ(minimised.tries, 1U);
  EXPECT_TRUE(diagnosis::Minimise(0, 0, [](const Kept&) { return false; }).is_minimal);
}

TEST(Minimising, EndsWhereNoSingleOneCanGo) {
  // Pairs go together, so that no half of one can.
  const auto shows = [](const Kept& kept) {
    for (std::size_t i = 0; i < 10; i += 2) {
      if (Holds(kept, i) != Holds(kept, i + 1)) return false;
    }
    return Holds(kept, 6);
  };
  const auto minimised = diagnosis::Minimise(10, 1000, shows);
  ASSERT_TRUE(minimised.is_minimal);
  ASSERT_TRUE(shows(minimised.kept));
  for (const std::size_t one : minimised.kept) {
    Kept rest = minimised.kept;
    rest.erase(std::find(rest.begin(), rest.end(), one));
    EXPECT_FALSE(shows(rest)) << "without " << one;
  }
}

TEST(Minimising, GoesRoundAgainWhenWhatWasNeededNoLongerIs) {
  // 5 is needed as long as 2 is there.
  const auto minimised = diagnosis::Minimise(
      6, 1000, [](const Kept& kept) { return Holds(kept, 0) && (Holds(kept, 5) || !Holds(kept, 2)); });
  EXPECT_EQ(minimised.kept, Kept{0});
}

TEST(Minimising, SaysSoWhenThereAreNotTriesEnough) {
  const auto minimised = diagnosis::Minimise(100, 5, [](const Kept& kept) { return Holds(kept, 99); });
  EXPECT_EQ(minimised.tries, 5U);
  EXPECT_FALSE(minimised.is_minimal);
  EXPECT_TRUE(Holds(minimised.kept, 99));
}
