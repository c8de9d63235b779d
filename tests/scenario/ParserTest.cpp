#include <gtest/gtest.h>

#include "softcard/Card.h"
#include "tests/scenario/Parsed.h"

namespace scenario {
namespace {

const std::string kVlan = "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01";

template <typename Action>
const Action& Only(const Scenario& scenario) {
  EXPECT_EQ(scenario.statements.size(), 1u);
  return std::get<Action>(scenario.statements.at(0).action);
}

TEST(Parser, ReadsEveryFieldOfARequest) {
  const Scenario scenario = Usable(
      "replace-mpls 0x14 vlan=10 lim=lag2 mac=02:00:00:00:00:ff+2 labels=100,0x10,4294967295 "
      "caps=protection,push,-1 action=drop  # comment\n");
  const auto& request = Only<Request>(scenario);
  EXPECT_EQ(scenario.statements[0].line, 1u);
  EXPECT_EQ(request.operation, Operation::kReplaceMpls);
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

TEST(Parser, WhatIsLeftOutIsEmpty) {
  const Scenario scenario = Usable("install-host 4294967295 vlan=0 lim=cpu mac=null\n");
  const auto& request = Only<Request>(scenario);
  EXPECT_EQ(request.id, 4294967295u);
  EXPECT_FALSE(request.mac.has_value());
  EXPECT_TRUE(request.actions.empty());
}

TEST(Parser, FieldsComeInAnyOrder) {
  EXPECT_EQ(FirstComplaint("install-vlan mac=null mtu=1 10 vrf=1 lim=vlan1\n"), "");
}

TEST(Parser, TakesPortsThatTheCardLacksAndRawLimIdsWhenAskedTo) {
  const Scenario scenario = Usable(
      "card ports=8\ninstall-host 1 vlan=0 lim=absent:eth9 mac=null\n"
      "install-host 1 vlan=0 lim=0x05000001 mac=null\n");
  EXPECT_EQ(std::get<Request>(scenario.statements[0].action).limid.word, softcard::LimId("eth9").word);
  EXPECT_EQ(std::get<Request>(scenario.statements[1].action).limid.word, 0x05000001u);
  EXPECT_EQ(FirstComplaint("install-host 1 vlan=0 lim=eth49 mac=null"),
            "1:27: the card has no eth49; it has eth1 ... eth48, and \"absent:eth49\" asks for the port all the same");
  EXPECT_EQ(FirstComplaint("card lags=0\ninstall-host 1 vlan=0 lim=lag1 mac=null"),
            "2:27: the card has no lag1; it has none, and \"absent:lag1\" asks for the port all the same");
}

TEST(Parser, UnrollsLoopsWithinEachOther) {
  const Scenario scenario = Usable("for I in 1..2\n  for J in $I..2\n    install-vrf $(10*I+J)  # each\n  end\nend\n");
  ASSERT_EQ(scenario.statements.size(), 3u);
  EXPECT_EQ(scenario.statements[0].text, "install-vrf 11");
  EXPECT_EQ(scenario.statements[1].text, "install-vrf 12");
  EXPECT_EQ(scenario.statements[2].text, "install-vrf 22");
  EXPECT_EQ(scenario.statements[2].line, 3u);
  EXPECT_EQ(std::get<Request>(scenario.statements[2].action).id, 22u);
}

TEST(Parser, LoopsReachTheLinesOfExpectations) {
  const Scenario scenario =
      Usable("for I in 5..5\n  expect table vrfs\n    vrf $I: flags=0x0\n\n    # none other\n  end\nend\n");
  EXPECT_EQ(Only<Expectation>(scenario).lines, (std::vector<std::string>{"vrf 5: flags=0x0"}));
}

TEST(Parser, SaidTextMayHoldQuotesAndNumberSigns) {
  const Scenario scenario = Usable("say Card #1 isn't \"here\n");
  EXPECT_EQ(Only<Say>(scenario).text, "Card #1 isn't \"here");
}

TEST(Parser, ReadsFaultsByNameAndNumber) {
  const Scenario scenario = Usable(
      "fail IntfManager::CreateIntf result=BCM_E_FULL\n"
      "fail IntfManager::GetIntfObject nth=every result=false\nfail call=7 result=-18\n");
  const auto fault = [&](std::size_t i) { return std::get<Fault>(scenario.statements[i].action); };
  EXPECT_EQ(fault(0).when, Fault::When::kNth);
  EXPECT_EQ(fault(0).number, 1u);
  EXPECT_EQ(fault(0).result, -6);
  EXPECT_EQ(fault(1).when, Fault::When::kEvery);
  EXPECT_EQ(fault(1).result, 0);
  EXPECT_EQ(fault(2).when, Fault::When::kNumbered);
  EXPECT_EQ(fault(2).number, 7u);
}

TEST(Parser, ReadsWhatAClientCalls) {
  const Scenario scenario = Usable("client c calls destroy-mpls 20 ; client \"d e\" throw \"no; really\"\n");
  const auto& client = Only<Client>(scenario);
  ASSERT_EQ(client.calls.size(), 2u);
  EXPECT_EQ(std::get<Request>(client.calls[0].action).id, 20u);
  EXPECT_EQ(client.calls[1].text, "client \"d e\" throw \"no; really\"");
  EXPECT_EQ(std::get<Client>(client.calls[1].action).what, "no; really");
}

TEST(Parser, TakesAnyLineEndingAndAByteOrderMark) {
  EXPECT_EQ(Usable("\xEF\xBB\xBFinit\r\n\r\n  # comment\r\ninit").statements.size(), 2u);
  EXPECT_EQ(Usable("").statements.size(), 0u);
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

struct UnusableLine {
  const char* text;
  const char* complaint;
};

class Unusable : public testing::TestWithParam<UnusableLine> {};

TEST_P(Unusable, LineNamesPlaceReasonAndRemedy) { EXPECT_EQ(FirstComplaint(GetParam().text), GetParam().complaint); }

INSTANTIATE_TEST_SUITE_P(
    Numbers, Unusable,
    testing::Values(
        UnusableLine{"install-vrf one", "1:13: \"one\" is no id; it is a number"},
        UnusableLine{"install-vrf 4294967296", "1:13: 4294967296 does not fit; id is 0 ... 4294967295"},
        UnusableLine{"install-vrf -1", "1:13: -1 does not fit; id is 0 ... 4294967295"},
        UnusableLine{"install-vrf 0xZ", "1:13: \"0xZ\" is no id; it is a number"},
        UnusableLine{"install-vrf 99999999999999999999999",
                     "1:13: 99999999999999999999999 does not fit; id is 0 ... 4294967295"},
        UnusableLine{"install-vlan 10 lim=vlan100 vrf=1 mtu=99999999999 mac=00:00:5e:00:01:01",
                     "1:39: 99999999999 does not fit; MTU is 0 ... 4294967295"},
        UnusableLine{"install-mpls 1 vlan=1 lim=eth1 mac=null labels=1,,2", "1:50: \"\" is no label; it is a number"},
        UnusableLine{"install-mpls 1 vlan=1 lim=eth1 mac=null caps=push,pop",
                     "1:51: \"pop\" is no MPLS capability; it is one of none, protection, swap, forward, push, vc"},
        UnusableLine{"install-host 1 vlan=1 lim=eth1 mac=null actions=dorp",
                     "1:49: \"dorp\" is no action; did you mean \"drop\"?"},
        UnusableLine{"fail fm_init result=BCM_E_FUL",
                     "1:21: \"BCM_E_FUL\" is no status; did you mean \"BCM_E_FULL\"?"}));

INSTANTIATE_TEST_SUITE_P(
    Addresses, Unusable,
    testing::Values(UnusableLine{"install-host 1 vlan=1 lim=eth1 mac=00:00:5e:00:01",
                                 "1:36: this MAC address has 5 bytes; one has six, such as 00:00:5e:00:01:01"},
                    UnusableLine{"install-host 1 vlan=1 lim=eth1 mac=00:00:5e:00:01:01:02",
                                 "1:36: this MAC address has 7 bytes; one has six, such as 00:00:5e:00:01:01"},
                    UnusableLine{"install-host 1 vlan=1 lim=eth1 mac=00:00:5e:00:01:0g",
                                 "1:51: \"0g\" is no byte of a MAC address; one looks like 00:00:5e:00:01:01, or null"},
                    UnusableLine{
                        "install-host 1 vlan=1 lim=eth1 mac=00:00:5e:00:01:101",
                        "1:51: \"101\" is no byte of a MAC address; one looks like 00:00:5e:00:01:01, or null"},
                    UnusableLine{"install-host 1 vlan=1 lim=eth1 mac=",
                                 "1:36: \"\" is no byte of a MAC address; one looks like 00:00:5e:00:01:01, or null"},
                    UnusableLine{"install-host 1 vlan=1 lim=eth1 mac=00:00:5e:00:01:01+x",
                                 "1:54: \"x\" is no offset of a MAC address; it is a number"}));

INSTANTIATE_TEST_SUITE_P(
    Ports, Unusable,
    testing::Values(
        UnusableLine{"install-host 1 vlan=1 lim=eht1 mac=null", "1:27: unknown port \"eht1\"; did you mean \"eth1\"?"},
        UnusableLine{"install-host 1 vlan=1 lim=wlan mac=null",
                     "1:27: unknown port \"wlan\"; a lim id is ethN, lagN, vlanN, cpu or the word itself, such as "
                     "0x05000001"},
        UnusableLine{"install-host 1 vlan=1 lim=vlan16777216 mac=null",
                     "1:27: vlan16777216 does not fit; the number of a lim id is 0 ... 16777215"}));

INSTANTIATE_TEST_SUITE_P(
    Statements, Unusable,
    testing::Values(
        UnusableLine{"instal-vlan", "1:1: unknown request \"instal-vlan\"; did you mean \"install-vlan\"?"},
        UnusableLine{"install-vrf", "1:1: \"install-vrf\" needs VRF"},
        UnusableLine{"install-vrf 1 2", "1:15: unexpected \"2\""},
        UnusableLine{"install-host 1 vlan=1 lim=eth1", "1:1: \"install-host\" needs mac=MAC"},
        UnusableLine{"install-host 1 vlan=1 vlan=2 lim=eth1 mac=null", "1:23: vlan= is given twice"},
        UnusableLine{"install-host 1 valn=1 lim=eth1 mac=null",
                     "1:16: \"install-host\" has no field \"valn\"; did you mean \"vlan\"?"},
        UnusableLine{"init now=1", "1:6: \"init\" has no field \"now\""},
        UnusableLine{"client c", "1:1: \"client\" needs a name and what it does"},
        UnusableLine{"client c throw", "1:10: \"throw\" needs TEXT"},
        UnusableLine{"client c notify me", "1:17: unexpected \"me\""},
        UnusableLine{"client c calls", "1:10: \"calls\" needs a request"},
        UnusableLine{"client c calls ; init", "1:16: a request is missing before this semicolon"},
        UnusableLine{
            "client c calls show all",
            "1:16: a callback makes requests, \"show\" is none; it is one of start, init, install-vrf, destroy-vrf, "
            "install-vlan, replace-vlan, destroy-vlan, install-host, replace-host, destroy-host, install-mpls, "
            "replace-mpls, destroy-mpls, client"},
        UnusableLine{
            "client c calls client d calls init",
            "1:16: a client that a callback registers cannot make calls itself; register it by a line of its own"},
        UnusableLine{
            "fail CreateIntf result=-1",
            "1:6: unknown platform function with a result \"CreateIntf\"; did you mean \"IntfManager::CreateIntf\"?"},
        UnusableLine{"fail result=-1", "1:1: \"fail\" needs either FUNCTION or call=N"},
        UnusableLine{"fail fm_init call=1 result=-1", "1:1: \"fail\" needs either FUNCTION or call=N"},
        UnusableLine{"fail nth=2 call=1 result=-1",
                     "1:10: nth= counts the calls of a function; with call= leave it out"},
        UnusableLine{"fail fm_init nth=0 result=-1", "1:18: 0 does not fit; number of a call is 1 ... 4294967295"},
        UnusableLine{"show", "1:1: \"show\" needs TABLE..."},
        UnusableLine{"show intf", "1:6: unknown table \"intf\"; did you mean \"intfs\"?"},
        UnusableLine{"say \"x\" \nclient \"x notify", "2:8: this quote is not closed"}));

INSTANTIATE_TEST_SUITE_P(
    Expectations, Unusable,
    testing::Values(
        UnusableLine{"expect",
                     "1:1: what is expected is missing; it is one of result, throw, log, call, notification, packet, "
                     "trace, rows, table, empty"},
        UnusableLine{"init\nexpect resul 0", "2:8: nothing is expected by \"expect resul\"; did you mean \"result\"?"},
        UnusableLine{"init\nexpect no result 0",
                     "2:11: nothing is expected by \"expect no result\"; it is one of log, call, notification, packet"},
        UnusableLine{"init\nexpect call CreateIntf",
                     "2:13: unknown platform function \"CreateIntf\"; did you mean \"IntfManager::CreateIntf\"?"},
        UnusableLine{"expect result 0", "1:1: no request comes before this expectation of its result"},
        UnusableLine{"client c notify\nexpect result 0", "2:1: \"client\" has no result"},
        UnusableLine{"start\nexpect throw \"x\"", "2:1: \"start\" has no result"},
        UnusableLine{"expect rows intfs many", "1:19: \"many\" is no number of rows; it is a number"},
        UnusableLine{"init\nexpect trace\n  log 7: x", "2:1: no line says \"end\" to what begins here"}));

INSTANTIATE_TEST_SUITE_P(
    Structure, Unusable,
    testing::Values(
        UnusableLine{"for I in 1..3\n  init", "1:1: no line says \"end\" to what begins here"},
        UnusableLine{"init\nend", "2:1: there is no \"for\" or \"expect\" that this \"end\" ends"},
        UnusableLine{"for I in 1..2\nend now", "2:5: nothing follows \"end\" on its line"},
        UnusableLine{"for I of 1..2\nend", "1:1: this is no loop"},
        UnusableLine{"for I in 3\nend", "1:10: \"3\" is no range"},
        UnusableLine{"for I in 3..2\nend", "1:10: this range is empty; a loop counts up"},
        UnusableLine{"for 1 in 1..2\nend", "1:5: \"1\" is no name for a counter; use letters"},
        UnusableLine{"for I in 1..x\nend", "1:13: \"x\" is no end of a range; it is a number"},
        UnusableLine{
            "for I in 1..3\n  install-host $I vlan=0 lim=eth$(I+46) mac=null\nend",
            "2:30: the card has no eth49; it has eth1 ... eth48, and \"absent:eth49\" asks for the port all the "
            "same (with I=3)"},
        UnusableLine{"for I in 1..4294967295\n  init\nend",
                     "1:1: the scenario has more than 4000000 lines with the rounds of its loops"},
        UnusableLine{"init\ncard ports=4", "2:1: \"card\" comes once, before everything else"},
        UnusableLine{"card ports=4\ncard ports=8", "2:1: \"card\" comes once, before everything else"},
        UnusableLine{"for I in 1..3000000\n  for J in 1..3000000\n  end\nend",
                     "2:3: the scenario has more than 4000000 lines with the rounds of its loops (with I=1)"},
        UnusableLine{"init\nstart",
                     "2:1: \"start\" comes before every request; without it the module starts first of "
                     "all"},
        UnusableLine{"card ports=70000", "1:12: 70000 does not fit; ports is 0 ... 65535"},
        UnusableLine{"card prots=7", "1:6: \"card\" has no field \"prots\"; did you mean \"ports\"?"}));

TEST(Parser, ComplainsOfALineInALoopOnceAndOfOtherLinesToo) {
  const auto complaints = ParseScenario("test.scn", "for I in 1..9\n  install-vrf x\nend\nint\nend\n").complaints;
  ASSERT_EQ(complaints.size(), 3u);
  EXPECT_EQ(complaints[0].message, "\"x\" is no id; it is a number (with I=1)");
  EXPECT_EQ(complaints[1].line, 4u);
  EXPECT_EQ(complaints[2].line, 5u);
}

TEST(Parser, StopsComplainingSomeday) {
  std::string text;
  for (int i = 0; i < 1000; ++i) text += "nonsense\n";
  EXPECT_EQ(ParseScenario("test.scn", text).complaints.size(), 20u);
}

TEST(Parser, SurvivesBytesThatAreNoText) {
  std::string text;
  for (int i = 0; i < 4096; ++i) text += static_cast<char>(i * 7919 >> 4);
  EXPECT_FALSE(ParseScenario("test.scn", text).complaints.empty());
}

}  // namespace
}  // namespace scenario
