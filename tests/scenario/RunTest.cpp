#include <gtest/gtest.h>

#include <algorithm>

#include "tests/scenario/Observed.h"

namespace scenario {
namespace {

const std::string kTunnel =
    "install-vrf 1\ninstall-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n"
    "install-mpls 20 vlan=10 lim=eth1 mac=00:00:5e:00:02:01 labels=100 caps=push\n";
const std::string kReplace = "replace-mpls 20 vlan=10 lim=eth2 mac=00:00:5e:00:02:01 labels=200 caps=push";

class RunTest : public testing::Test {
 protected:
  // The module starts once in a process; what that looks like is the sessions' matter.
  static void SetUpTestSuite() { const Observed start(""); }
};

TEST_F(RunTest, TellsEachStatementInItsTurn) {
  const Observed observed("install-vrf 1  # the first\nexpect result 0\nshow vrfs\nsay It's \"#1\n");
  ASSERT_EQ(observed.steps.size(), 5u);
  EXPECT_EQ(observed.steps[0].line, 0u);
  EXPECT_EQ(observed.steps[0].kind, Kind::kStart);
  EXPECT_EQ(observed.steps[1].kind, Kind::kRequest);
  EXPECT_EQ(observed.steps[1].text, "install-vrf 1");
  ASSERT_EQ(observed.steps[1].trace().lines.size(), 1u);
  EXPECT_EQ(observed.steps[1].trace().lines[0].Text(), "IngressManager::CreateIngress(unit=0, vrf=1, flags=0x0) = 0");
  EXPECT_EQ(observed.steps[1].trace().result.Text(), "0");
  EXPECT_FALSE(std::get<Checked>(observed.steps[2].content).failure);
  EXPECT_EQ(std::get<Shown>(observed.steps[3].content).tables.at(0).rows.size(), 1u);
  EXPECT_EQ(std::get<Said>(observed.steps[4].content).text, "It's \"#1");
  EXPECT_EQ(observed.file, "test.scn");
  EXPECT_EQ(observed.tally.requests, 1u);
  EXPECT_EQ(observed.tally.expectations, 1u);
  EXPECT_EQ(observed.tally.failed, 0u);
}

TEST_F(RunTest, GoesThroughLoopsWithinEachOtherRoundByRound) {
  const Observed observed("for I in 1..2\n  for J in $I..2\n    install-vrf $(10*I+J)  # each\n  end\nend\n");
  ASSERT_EQ(observed.steps.size(), 4u);
  EXPECT_EQ(observed.steps[1].text, "install-vrf 11");
  EXPECT_EQ(observed.steps[2].text, "install-vrf 12");
  EXPECT_EQ(observed.steps[3].text, "install-vrf 22");
  EXPECT_EQ(observed.steps[3].line, 3u);
  EXPECT_EQ(observed.steps[3].rounds, (Counters{{"I", 2}, {"J", 2}}));
}

TEST_F(RunTest, LoopsReachTheLinesOfExpectations) {
  EXPECT_EQ(Failures("for I in 5..6\n  install-vrf $I\n  expect table vrfs\n    vrf $I: flags=0x0\n\n    # none other\n"
                     "  end\n  destroy-vrf $I\nend\n"),
            "");
}

TEST_F(RunTest, TellsWhichFaultsArePlanned) {
  const Observed observed(
      "fail IntfManager::CreateIntf result=BCM_E_FULL\n"
      "fail IntfManager::GetIntfObject nth=every result=false\nfail call=7 result=-18\nclear-faults\n");
  const auto fault = [&](unsigned line) { return std::get<PlannedFault>(observed.At(line).content); };
  EXPECT_EQ(fault(1).when, PlannedFault::When::kNth);
  EXPECT_EQ(fault(1).function, "IntfManager::CreateIntf");
  EXPECT_EQ(fault(1).number, 1u);
  EXPECT_EQ(fault(1).result, -6);
  EXPECT_EQ(fault(2).when, PlannedFault::When::kEvery);
  EXPECT_EQ(fault(2).result, 0);
  EXPECT_EQ(fault(3).when, PlannedFault::When::kNumbered);
  EXPECT_EQ(fault(3).number, 7u);
  EXPECT_TRUE(std::holds_alternative<ClearedFaults>(observed.At(4).content));
}

TEST_F(RunTest, RecordsWhatTheModuleLooksAtOnlyWhenAsked) {
  const auto has_access = [](const Observed& observed) {
    const std::vector<TraceLine>& lines = observed.At(1).trace().lines;
    return std::any_of(lines.begin(), lines.end(),
                       [](const TraceLine& line) { return line.kind() == TraceLine::Kind::kAccess; });
  };
  EXPECT_FALSE(has_access(Observed("install-vrf 1\n")));
  EXPECT_TRUE(has_access(Observed("install-vrf 1\n", Options{true})));
}

TEST_F(RunTest, ExpectationsDoNotDependOnWhatIsRecorded) {
  const Observed observed(
      "install-vrf 1\nexpect trace\nIngressManager::CreateIngress(unit=0, vrf=1, flags=0x0) = 0\nend\n", Options{true});
  EXPECT_EQ(observed.tally.failed, 0u);
}

TEST_F(RunTest, ASecondOneInTheProcessTellsTheSame) {
  const std::string scenario = kTunnel + "client twice calls destroy-vrf 9 ; client other notify\n" +
                               "fail IntfManager::CreateIntf nth=every result=-1\n" + kReplace +
                               "\nfor I in 1..3\ninstall-vrf $I\nexpect result 0\nend\nshow all\n";
  const std::string before = Transcript(Observed(scenario));  // makes the clients known: a name that is new logs less
  EXPECT_NE(Transcript(Observed(scenario)), before);
  EXPECT_EQ(Transcript(Observed(scenario)), Transcript(Observed(scenario)));
}

TEST_F(RunTest, TakesItsClientsBack) {
  const Observed earlier(kTunnel + "client left-over notify\n");
  EXPECT_EQ(Failures(kTunnel + kReplace + "\nexpect no notification\nexpect no log 7 \"Calling callback*\"\n"), "");
}

TEST_F(RunTest, BeginsOnAnEmptyCard) {
  const Observed earlier("install-vrf 1\nfail IngressManager::CreateIngress nth=every result=-1\n");
  EXPECT_EQ(Failures("expect empty\ninstall-vrf 1\nexpect result 0\n"), "");
}

TEST_F(RunTest, AFailedTraceShowsTheDifference) {
  EXPECT_EQ(Failures("destroy-vlan 12\nexpect trace\nlog 7: Destroying*\nlog 4: Gone\nend\n"),
            "2: expect trace\n"
            "    - expected, + found:\n"
            "      log 7: Destroying outgoing encapsulation for vlan destination id(12)\n"
            "    - log 4: Gone\n"
            "    + log 3: Couldn't find DestinationIdCorrelator with destination id(12)\n");
}

TEST_F(RunTest, AFailedTableShowsTheDifference) {
  EXPECT_EQ(Failures("install-vrf 1\nexpect table vrfs\n  vrf 2: flags=0x0\nend\n"),
            "2: expect table vrfs\n"
            "    - expected, + found:\n"
            "    - vrf 2: flags=0x0\n"
            "    + vrf 1: flags=0x0\n");
}

TEST_F(RunTest, EveryExpectationCanFail) {
  EXPECT_NE(Failures("install-vrf 1\nexpect result 1\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect throw \"*\"\n"), "");
  EXPECT_NE(Failures("destroy-vlan 1\nexpect log 4\n"), "");
  EXPECT_NE(Failures("destroy-vlan 1\nexpect log 3 \"Couldn't\"\n"), "");
  EXPECT_NE(Failures("destroy-vlan 1\nexpect no log 3\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect call IngressManager::DeleteIngress\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect call \"IngressManager::CreateIngress()\"\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect no call\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect notification\n"), "");
  EXPECT_NE(Failures("send 1\nexpect packet \"sent*\"\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect rows vrfs 2\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect empty\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect empty except=intfs\n"), "");
}

TEST_F(RunTest, EveryExpectationCanHold) {
  EXPECT_EQ(Failures("install-vrf 1\nexpect call \"IngressManager::CreateIngress(*) = 0\"\n"
                     "expect call IngressManager::CreateIngress\nexpect call\nexpect no log\nexpect no notification\n"
                     "expect rows vrfs 1\nexpect empty except=vrfs\n"
                     "destroy-vlan 1\nexpect log 3 \"Couldn't*id(1)\"\nexpect log 7\nexpect log\nexpect no log 4\n"
                     "expect no call\nexpect result -1\n"),
            "");
}

TEST_F(RunTest, ClientsAreTold) {
  EXPECT_EQ(Failures(kTunnel + "client a notify\nclient b empty\n" + kReplace +
                     "\nexpect notification a id=20 port=2\nexpect notification\nexpect no notification b\n"
                     "expect no notification a port=1\n"),
            "");
}

TEST_F(RunTest, AClientMayThrow) {
  EXPECT_EQ(Failures(kTunnel + "client a throw \"out of order\"\n" + kReplace +
                     "\nexpect throw \"std::runtime_error: out of order\"\nexpect notification a\n"),
            "");
}

TEST_F(RunTest, AClientMayRegisterAnotherWhoseNameAndTextAreQuoted) {
  const std::string replace_again = "\nreplace-mpls 20 vlan=10 lim=eth3 mac=00:00:5e:00:02:01 labels=300 caps=push";
  const Observed observed(kTunnel + "client c calls destroy-mpls 99 ; client \"d e\" throw \"no; really\"\n" +
                          kReplace + replace_again + "\nclient \"d e\" empty\n");
  EXPECT_EQ(observed.At(6).trace().result.Text(), "threw std::runtime_error: no; really");
  EXPECT_NE(Transcript(observed).find("client c calls client \"d e\" throw \"no; really\"\n"), std::string::npos);
}

TEST_F(RunTest, AClientThatIsCalledByItsOwnRequestDoesNotStartOver) {
  EXPECT_EQ(Failures(kTunnel + "client a calls replace-mpls 20 vlan=10 lim=eth3 mac=null labels=7 caps=push\n" +
                     kReplace + "\nexpect notification a port=2\nexpect no notification a port=3\nexpect result 0\n"),
            "");
}

TEST_F(RunTest, WhatAClientCallsIsPartOfTheTraceOneDeeper) {
  const Observed observed(kTunnel + "client a calls destroy-vrf 9 ; client b notify\n" + kReplace + "\n");
  EXPECT_NE(Transcript(observed).find("log 7: Calling callback for client a.\n"
                                      "client a is told id=20 port=2\n"
                                      "client a calls destroy-vrf 9\n"
                                      "  IngressManager::DeleteIngress(unit=0, vrf=9) = -7 (No such entry)\n"
                                      "client a gets -7\n"
                                      "client a calls client b notify\n"),
            std::string::npos)
      << Transcript(observed);
}

TEST_F(RunTest, APacketTellsItsWayAndItsFrame) {
  const Observed observed(kTunnel + "send 20 ttl=9 tos=0x20 size=22\n");
  const KeptStep& step = observed.steps.back();
  EXPECT_EQ(step.kind, Kind::kPacket);
  EXPECT_EQ(step.trace().lines.front().kind(), TraceLine::Kind::kPacket);
  EXPECT_EQ(step.trace().lines.back().Text(),
            "frame 00005e000201 00005e000101 81000064 8847 000643ff 452000160000000009fdc495c0000201c63364010000");
  EXPECT_EQ(
      Failures(kTunnel +
               "send 10\nexpect packet \"dropped: no-egress: destination 10 is a VLAN, not a way to a next hop\"\n"
               "send 99\nexpect packet \"dropped: no-record: destination 99 is not installed\"\n"
               "expect no packet \"frame*\"\n"),
      "");
}

TEST_F(RunTest, ShowsTheRowsThatAnExpectationOfTheTableCompares) {
  const Observed observed(kTunnel + "show destinations\n");
  const auto& shown = std::get<Shown>(observed.steps.back().content);
  ASSERT_EQ(shown.tables.size(), 1u);
  EXPECT_EQ(shown.tables[0].name, "destinations");
  std::string table;
  for (const softcard::Row& row : shown.tables[0].rows) table += softcard::Text(row) + "\n";
  EXPECT_EQ(Failures(kTunnel + "expect table destinations\n" + table + "end\n"), "");
}

TEST_F(RunTest, FaultsHappenAsPlannedAndGoWhenCleared) {
  EXPECT_EQ(Failures("fail IngressManager::CreateIngress nth=2 result=BCM_E_FULL\ninstall-vrf 1\nexpect result 0\n"
                     "install-vrf 2\nexpect result BCM_E_FULL\ninstall-vrf 2\nexpect result 0\n"
                     "fail IngressManager::CreateIngress nth=every result=-4\ninstall-vrf 3\nexpect result -4\n"
                     "clear-faults\ninstall-vrf 3\nexpect result 0\n"
                     "fail call=1 result=BCM_E_BUSY\ninstall-vrf 4\nexpect result BCM_E_BUSY\n"),
            "");
}

TEST_F(RunTest, ExpectationsFitAnInjectedResultWithItsMarkAndWithout) {
  EXPECT_EQ(Failures("fail IngressManager::CreateIngress result=BCM_E_FULL\ninstall-vrf 1\n"
                     "expect call \"IngressManager::CreateIngress(*) = -6 (Table full)\"\n"
                     "expect call \"* [injected]\"\nexpect no call \"* = 0 [injected]\"\n"
                     "expect trace\nIngressManager::CreateIngress(unit=0, vrf=1, flags=0x0) = -6 (Table full)\nend\n"
                     "install-vrf 1\nexpect no call \"* [injected]\"\n"),
            "");
}

TEST_F(RunTest, AFaultThatNeverHappenedFails) {
  EXPECT_EQ(Failures("fail IngressManager::CreateIngress nth=3 result=-1\ninstall-vrf 1\ninstall-vrf 2\n"
                     "for I in 1..2\nfail IntfManager::GetIntfObject nth=every result=false\nend\n"
                     "fail call=2 result=-1\ndestroy-vrf 1\n"),
            "1: fail IngressManager::CreateIngress nth=3 result=-1\n"
            "    this fault never happened: IngressManager::CreateIngress was called 2 times since\n"
            "5: fail IntfManager::GetIntfObject nth=every result=false\n"
            "    this fault never happened: IntfManager::GetIntfObject was called 0 times since\n"
            "5: fail IntfManager::GetIntfObject nth=every result=false\n"
            "    this fault never happened: IntfManager::GetIntfObject was called 0 times since\n"
            "7: fail call=2 result=-1\n"
            "    this fault never happened: platform functions were called once since\n");
  EXPECT_EQ(Failures("fail IngressManager::CreateIngress result=-1\nclear-faults\n"), "");
}

TEST_F(RunTest, KnowsAmongManyFaultsTheOneThatNeverHappened) {
  const Observed observed(
      "fail fm_init result=-1\nfor I in 1..3000\nfail IngressManager::CreateIngress result=-1\n"
      "install-vrf 1\nend\n");
  EXPECT_EQ(observed.tally.failed, 1u);
  EXPECT_TRUE(std::get<Checked>(observed.At(1).content).failure);
}

TEST_F(RunTest, ANumberedFaultPassesAFunctionWithoutAResultOver) {
  EXPECT_EQ(Failures("install-vrf 1\ninstall-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=null\nfail call=3 result=-1\n"
                     "install-vlan 11 lim=vlan101 vrf=1 mtu=1500 mac=null\n"),
            "3: fail call=3 result=-1\n"
            "    this fault never happened: call 3 was of a function without a result that a fault could replace\n");
}

TEST_F(RunTest, AStrictRunExpectsEveryResult) {
  Options strict;
  strict.strict = true;
  const auto failed = [&](const std::string& text) { return Observed(text, strict).tally.failed; };
  EXPECT_EQ(failed("install-vrf 1\ninstall-vrf 1\nexpect result BCM_E_EXISTS\n"), 0u);
  EXPECT_EQ(failed("install-vrf 1\ninstall-vrf 1\nexpect no log\ninstall-vrf 2\n"), 1u);
  EXPECT_EQ(failed("install-vrf 1\ninstall-vrf 1\nsend 1\n"), 1u);
  EXPECT_EQ(failed(kTunnel + "client a throw \"x\"\n" + kReplace), 1u);
  EXPECT_EQ(failed(kTunnel + "client a throw \"x\"\n" + kReplace + "\nexpect throw \"*x\"\n"), 0u);
  const Observed observed("destroy-vrf 1\n", strict);
  EXPECT_EQ(observed.steps.back().line, 1u);
  EXPECT_EQ(std::get<Checked>(observed.steps.back().content).failure,
            (Failure{"expected: 0, as no line expects another result", "found:    -7"}));
}

TEST_F(RunTest, AnAsteriskThatIsMeantIsEscaped) {
  const std::string client = kTunnel + "client \"*\" notify\n" + kReplace + "\n";
  EXPECT_EQ(Failures(client + "expect log 7 \"Calling callback for client \\*.\"\n"), "");
  EXPECT_NE(Failures(client + "expect no log 7 \"Calling callback for client *\"\n"), "");
  EXPECT_NE(Failures(client + "expect log 7 \"Calling callback for client \\*\"\n"), "");
}

TEST_F(RunTest, ALogLineIsExpectedWithoutItsLevelToo) {
  EXPECT_EQ(Failures("destroy-vlan 12\nexpect log \"Couldn't*\"\nexpect log 3\nexpect no log \"Could\"\n"), "");
  EXPECT_NE(Failures("destroy-vlan 12\nexpect log \"Could\"\n"), "");
}

TEST_F(RunTest, TheRequestsOfClientsInsideOneRequestAreBounded) {
  std::string clients;
  for (char name = 'a'; name <= 'h'; ++name) {
    clients += std::string("client ") + name +
               " calls replace-mpls 20 vlan=10 lim=eth3 mac=00:00:5e:00:02:01 labels=7 caps=push\n";
  }
  const Observed observed(kTunnel + clients + kReplace + "\n");
  EXPECT_EQ(observed.tally.failed, 1u);
  EXPECT_EQ(std::get<Checked>(observed.steps.back().content).failure,
            Failure{"update clients made more than 1000 requests inside this one"});
  EXPECT_EQ(observed.steps[observed.steps.size() - 2].trace().result.Text(),
            "threw std::runtime_error: update clients may make 1000 requests inside one request");
}

TEST_F(RunTest, AnExpectationMayFailBeforeTheModuleStarts) {
  EXPECT_EQ(Failures("expect rows vrfs 1\nstart\n"),
            "1: expect rows vrfs 1\n    expected: 1 rows in vrfs\n    found:    0\n");
}

TEST_F(RunTest, AFailureKnowsTheRequestThatItIsAbout) {
  const Observed observed("for I in 1..2\n  install-vrf $I\n  expect result $(I-1)\nend\n");
  const auto& checked = std::get<Checked>(observed.At(3).content);
  EXPECT_EQ(checked.request_line, 2u);
  EXPECT_EQ(checked.request, "install-vrf 2");
  EXPECT_EQ(observed.At(3).rounds, (Counters{{"I", 2}}));
}

TEST_F(RunTest, TheCardIsAsTheScenarioDescribesIt) {
  EXPECT_EQ(
      Failures("card ports=2 lags=1 intfs=2 unit=3 exp-map=9\nexpect rows ports 3\nexpect rows lags 1\n" + kTunnel +
               "expect call \"bcm_mpls_tunnel_initiator_set(unit=3, *qos_map=9*) = 0\"\n"
               "install-vlan 11 lim=vlan101 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n"
               "expect call \"IntfManager::CreateIntf(unit=3, *) = -6 (Table full)\"\n"),
      "");
}

}  // namespace
}  // namespace scenario
