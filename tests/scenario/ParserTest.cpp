#include <gtest/gtest.h>

#include "scenario/Fields.h"
#include "scenario/Requests.h"
#include "tests/scenario/Observed.h"

namespace scenario {
namespace {

/// What a request's line means on a card of the built-in kind.
RequestArguments Request(const std::string& line) {
  Texts texts;
  const auto words = Tokenize(line, texts);
  return ReadRequest(Fields(TheLanguage().Find(words[0].text)->form, words, 1), {});
}

TEST(Parser, ReadsEveryFieldOfARequest) {
  const RequestArguments request = Request(
      "replace-mpls 0x14 vlan=10 lim=lag2 mac=02:00:00:00:00:ff+2 labels=100,0x10,4294967295 "
      "caps=protection,push,-1 action=drop  # comment");
  EXPECT_EQ(request.id, 20u);
  EXPECT_EQ(request.vlan_destination_id, 10u);
  EXPECT_EQ(request.limid.word, softcard::LimId("lag2").word);
  EXPECT_EQ(request.mac, (std::array<unsigned char, 6>{2, 0, 0, 0, 1, 1}));
  EXPECT_EQ(request.labels, (std::vector<unsigned>{100, 16, 4294967295}));
  EXPECT_EQ(request.mpls_capabilities,
            (std::vector<en_HalMplsCapabilities>{HAL_MPLS_CAPABILITY_PROTECTION, HAL_MPLS_CAPABILITY_PUSH,
                                                 en_HalMplsCapabilities{-1}}));
  EXPECT_EQ(request.action, HAL_ACTION_DROP);
}

TEST(Parser, ReadsWhatOnlyAVlanHas) {
  const RequestArguments request = Request("install-vlan 10 lim=vlan100 vrf=7 mtu=1500 mac=null caps=station-flag");
  EXPECT_EQ(request.vrf, 7u);
  EXPECT_EQ(request.mtu, 1500u);
  EXPECT_EQ(request.vlan_capabilities, std::vector<en_HalVlanCapabilities>{en_HalVlanCapabilities{1}});
}

TEST(Parser, WhatIsLeftOutIsEmpty) {
  const RequestArguments request = Request("install-host 4294967295 vlan=0 lim=cpu mac=null");
  EXPECT_EQ(request.id, 4294967295u);
  EXPECT_FALSE(request.mac.has_value());
  EXPECT_TRUE(request.actions.empty());
}

TEST(Parser, FieldsComeInAnyOrder) {
  EXPECT_EQ(FirstComplaint("install-vlan mac=null mtu=1 10 vrf=1 lim=vlan1\n"), "");
}

TEST(Parser, TakesPortsThatTheCardLacksAndRawLimIdsWhenAskedTo) {
  EXPECT_EQ(Request("install-host 1 vlan=0 lim=absent:eth49 mac=null").limid.word, softcard::LimId("eth49").word);
  EXPECT_EQ(Request("install-host 1 vlan=0 lim=0x05000001 mac=null").limid.word, 0x05000001u);
  EXPECT_EQ(FirstComplaint("card ports=8\ninstall-host 1 vlan=0 lim=absent:eth9 mac=null\n"), "");
  EXPECT_EQ(FirstComplaint("install-host 1 vlan=0 lim=eth49 mac=null"),
            "1:27: the card has no eth49; it has eth1 ... eth48, and \"absent:eth49\" asks for the port all the same");
  EXPECT_EQ(FirstComplaint("card lags=0\ninstall-host 1 vlan=0 lim=lag1 mac=null"),
            "2:27: the card has no lag1; it has none, and \"absent:lag1\" asks for the port all the same");
}

TEST(Parser, KeepsLoopsAsTheirLines) {
  const Scenario scenario = Usable("for I in 1..2\n  for J in $I..2\n    install-vrf $(10*I+J)  # each\n  end\nend\n");
  ASSERT_EQ(scenario.lines.size(), 1u);
  ASSERT_EQ(scenario.lines[0].body.size(), 1u);
  ASSERT_EQ(scenario.lines[0].body[0].body.size(), 1u);
  EXPECT_EQ(scenario.lines[0].body[0].body[0].statement, "install-vrf $(10*I+J)");
}

TEST(Parser, TakesAnyLineEndingAndAByteOrderMark) {
  EXPECT_EQ(Usable("\xEF\xBB\xBFinit\r\n\r\n  # comment\r\ninit").lines.size(), 2u);
  EXPECT_EQ(Usable("init\r# comment\rinit\r").lines.size(), 2u);
  EXPECT_EQ(FirstComplaint("init\r\n\r\nint\r\n").substr(0, 4), "3:1:");
  EXPECT_EQ(Usable("").lines.size(), 0u);
}

TEST(Parser, PointsAtThePlaceUnderTheLine) {
  EXPECT_EQ(Complaints("init\n\tinstal-vlan 10\n"),
            "test.scn:2:2: error: unknown request \"instal-vlan\"; did you mean \"install-vlan\"?\n"
            "  \tinstal-vlan 10\n"
            "  \t^\n");
  EXPECT_EQ(Complaints("client \xC3\xA9 shout\r\n"),
            "test.scn:1:10: error: no client does \"shout\"; it is one of notify, empty, throw, calls\n"
            "  client \xC3\xA9 shout\n"
            "           ^\n"
            "  usage: client NAME notify | empty | throw TEXT | calls REQUEST [; REQUEST]...\n");
}

TEST(Parser, ComplainsOfALineInALoopOnceAndOfOtherLinesToo) {
  const auto complaints = Parsed("for I in 1..9\n  install-vrf x\nend\nint\nend\n").complaints;
  ASSERT_EQ(complaints.size(), 3u);
  EXPECT_EQ(complaints[0].message, "\"x\" is no id; it is a number (with I=1)");
  EXPECT_EQ(complaints[1].line, 4u);
  EXPECT_EQ(complaints[2].line, 5u);
}

TEST(Parser, WhatAnUnusableLineMayHaveBroughtIsNotMissedAfterIt) {
  for (const char* const lines : {"send 1\ninstall-vrf x\nexpect log 3\n", "send 1\ninstall-vrf x\nexpect result 0\n",
                                  "init\nsend x\nexpect packet \"sent*\"\n"}) {
    const auto complaints = Parsed(lines).complaints;
    ASSERT_EQ(complaints.size(), 1u) << complaints.back().message;
    EXPECT_EQ(complaints[0].line, 2u);
  }
}

TEST(Parser, ShowsOfALongLineWhatIsAroundThePlace) {
  const std::string blanks(1000, ' ');
  const auto complaints = Parsed("install-vrf" + blanks + "x" + blanks + "# comment\n").complaints;
  ASSERT_EQ(complaints.size(), 1u);
  EXPECT_EQ(complaints[0].column, 1012u);
  EXPECT_EQ(complaints[0].source.size(), 300u);
  EXPECT_EQ(complaints[0].source[complaints[0].offset], 'x');
  EXPECT_LT(Complaints("install-vrf " + std::string(1'000'000, 'x')).size(), 1500u);
}

TEST(Parser, ShowsControlCharactersAsText) {
  EXPECT_EQ(Complaints("say \x1b[2J\ninstal \x1b[2J\xC2\x9B x\n"),
            "test.scn:2:1: error: unknown request \"instal\"; did you mean \"install-vrf\"?\n"
            "  instal \\x1b[2J\\x9b x\n"
            "  ^\n");
}

TEST(Parser, DefinedNamesAreReadLikeCounters) {
  const auto parsed =
      ParseScenario(TheLanguage(), "test.scn", "card ports=$N\ninstall-vrf $(N*2)\nsay $N\n", {{"N", 4}});
  EXPECT_TRUE(parsed.complaints.empty());
  EXPECT_EQ(parsed.scenario.card.front_ports, 4u);
  const Observed observed(parsed.scenario);
  EXPECT_EQ(observed.At(2).text, "install-vrf 8");
}

TEST(Parser, StopsComplainingSomeday) {
  std::string text;
  for (int i = 0; i < 1000; ++i) text += "nonsense\n";
  EXPECT_EQ(Parsed(text).complaints.size(), 20u);
  EXPECT_EQ(Parsed(text).more_complaints, 980u);
}

TEST(Parser, SurvivesBytesThatAreNoText) {
  std::string text;
  for (int i = 0; i < 4096; ++i) text += static_cast<char>(i * 7919 >> 4);
  EXPECT_FALSE(Parsed(text).complaints.empty());
}

}  // namespace
}  // namespace scenario
