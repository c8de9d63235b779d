#include <gtest/gtest.h>

#include "calls/Pattern.h"

using calls::Matches;

TEST(APattern, StandsForItselfWithoutAStar) {
  EXPECT_TRUE(Matches("log 7: a", "log 7: a"));
  EXPECT_FALSE(Matches("log 7: a", "log 7: ab"));
  EXPECT_FALSE(Matches("log 7: ab", "log 7: a"));
  EXPECT_TRUE(Matches("", ""));
}

TEST(APattern, LetsAStarStandForAnyCharacters) {
  EXPECT_TRUE(Matches("*", ""));
  EXPECT_TRUE(Matches("a*c", "abbbc"));
  EXPECT_TRUE(Matches("*b*c", "abbcbc"));
  EXPECT_TRUE(Matches("a**", "a"));
  EXPECT_FALSE(Matches("a*c", "abbb"));
}

TEST(APattern, HasAnEscapeForAStar) {
  EXPECT_TRUE(Matches("\\*", "*"));
  EXPECT_FALSE(Matches("\\*", "a"));
  EXPECT_FALSE(Matches("\\*", "\\*"));
  EXPECT_TRUE(Matches("\\\\", "\\"));
  EXPECT_TRUE(Matches("*\\**", "a * b"));
  EXPECT_FALSE(Matches("*\\**", "a + b"));
  EXPECT_TRUE(Matches("a\\b", "a\\b"));  // nothing that needs an escape: a backslash
}
