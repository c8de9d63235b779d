#include <gtest/gtest.h>

#include "serve/Conversation.h"
#include "tests/scenario/Parsed.h"
#include "tests/serve/PlainFormat.h"

namespace serve {
namespace {

class ConversationTest : public testing::Test {
 protected:
  softcard::Card& card_ = softcard::Card::Get();
  const Formats formats_ = PlainFormat::All();
  scenario::Session session_{TheLanguage(), card_, {}};
  Conversation one_{session_, TheLanguage(), formats_, "one"};
  Conversation other_{session_, TheLanguage(), formats_, "other"};
};

TEST_F(ConversationTest, AnswersEachLineAndSaysHowItEnded) {
  EXPECT_EQ(one_.Answer("install-vrf 1"), "> install-vrf 1: 0\nend 0\n");
  EXPECT_EQ(one_.Answer("expect result -1"), "- found:    0\nend 1\n");
  EXPECT_EQ(one_.Answer(""), "end 0\n");
  EXPECT_EQ(one_.Answer("# a comment"), "end 0\n");
  EXPECT_EQ(one_.Answer("show vrfs"), "end 0\n");
}

TEST_F(ConversationTest, ARefusedLineHasItsPlaceAndChangesNothing) {
  EXPECT_EQ(one_.Answer("install-vrf 1"), "> install-vrf 1: 0\nend 0\n");
  EXPECT_EQ(one_.Answer("install-vrf one"),
            "one:2:13: error: \"one\" is no id; it is a number\n  install-vrf one\n              ^\nend 2\n");
  EXPECT_EQ(card_.RowCount("vrfs"), 1U);
}

TEST_F(ConversationTest, LinesThatBeginSomethingWaitForItsEnd) {
  EXPECT_EQ(one_.Answer("for I in 1..2"), "end 3\n");
  EXPECT_EQ(one_.Answer("install-vrf $I"), "end 3\n");
  EXPECT_EQ(other_.Answer("install-vrf 9"), "> install-vrf 9: 0\nend 0\n") << "others do not wait";
  EXPECT_EQ(one_.Answer("end"), "> install-vrf 1: 0\n> install-vrf 2: 0\nend 0\n");
}

TEST_F(ConversationTest, EachChoosesItsFormat) {
  EXPECT_EQ(one_.Answer(" other "), "other end 0\n");
  EXPECT_EQ(one_.Answer("show vrfs"), "other end 0\n");
  EXPECT_EQ(other_.Answer("show vrfs"), "end 0\n");
  EXPECT_EQ(one_.Answer("text"), "end 0\n");
  one_.Answer("expect trace");
  EXPECT_EQ(one_.Answer("other"), "end 3\n") << "a line of the trace";
}

TEST_F(ConversationTest, ALoopIsBoundedSoThatOthersHaveTheirTurn) {
  one_.Answer("for I in 1..10001");
  one_.Answer("install-vrf $I");
  EXPECT_EQ(one_.Answer("end").substr(0, 83),
            "one:1:1: error: the scenario has more than 10000 lines with the rounds of its loops");
  EXPECT_EQ(card_.RowCount("vrfs"), 0U);
}

TEST_F(ConversationTest, LinesWithoutEndAreRefused) {
  one_.Answer("for I in 1..2");
  const std::string long_line(scenario::Collector::kMost, '#');
  EXPECT_EQ(one_.Answer(long_line), "error: more than 1 MiB of lines without their \"end\"\nend 2\n");
  EXPECT_EQ(one_.Answer("install-vrf 1"), "> install-vrf 1: 0\nend 0\n");
}

}  // namespace
}  // namespace serve
