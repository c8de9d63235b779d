#include <gtest/gtest.h>

#include "scenario/SyntaxError.h"
#include "scenario/Tokens.h"

namespace scenario {
namespace {

Texts texts;

TEST(Tokens, AreSeparatedByBlanksAndKnowTheirPlace) {
  const auto tokens = Tokenize("  install-vrf\t 1  ", texts);
  ASSERT_EQ(tokens.size(), 2u);
  EXPECT_EQ(tokens[0].text, "install-vrf");
  EXPECT_EQ(tokens[0].offset, 2u);
  EXPECT_EQ(tokens[1].text, "1");
  EXPECT_EQ(tokens[1].offset, 15u);
}

TEST(Tokens, QuotesKeepBlanksTogetherAndEscapesQuotesAndBackslashes) {
  const auto tokens = Tokenize(R"(throw "no \"room\" \\ left" name="a b")", texts);
  ASSERT_EQ(tokens.size(), 3u);
  EXPECT_EQ(tokens[1].text, R"(no "room" \ left)");
  EXPECT_TRUE(tokens[1].quoted);
  EXPECT_EQ(tokens[2].text, "name=a b");
  EXPECT_FALSE(tokens[2].quoted);
}

TEST(Tokens, EndAtAWordThatBeginsWithANumberSign) {
  EXPECT_EQ(Tokenize("init # again", texts).size(), 1u);
  EXPECT_EQ(Tokenize("log a#b", texts).size(), 2u);
  EXPECT_EQ(Tokenize("log \"# no comment\"", texts).size(), 2u);
  EXPECT_EQ(WithoutComment("  init   # again"), "init");
}

TEST(Tokens, RefuseAQuoteThatIsNotClosedAtItsPlace) {
  try {
    Tokenize("throw \"no room", texts);
    FAIL() << "nothing was thrown";
  } catch (const SyntaxError& error) {
    EXPECT_EQ(error.offset, 6u);
  }
}

TEST(Tokens, ElementsOfAListKnowTheirPlaceToo) {
  const auto elements = Elements({"100,,3", 7});
  ASSERT_EQ(elements.size(), 3u);
  EXPECT_EQ(elements[0].text, "100");
  EXPECT_EQ(elements[1].text, "");
  EXPECT_EQ(elements[1].offset, 11u);
  EXPECT_EQ(elements[2].offset, 12u);
  EXPECT_TRUE(Elements({"", 7}).empty());
}

}  // namespace
}  // namespace scenario
