#include <gtest/gtest.h>

#include <sstream>

#include "scenario/Runner.h"
#include "tests/scenario/Parsed.h"

namespace scenario {
namespace {

std::string Output(const std::string& text, Detail detail = Detail::kCalls, bool accesses = false,
                   bool colour = false) {
  std::ostringstream out;
  Run(Usable(text), {detail, accesses, colour}, out);
  return out.str();
}

/// What a run says of the expectations that do not hold; "" when all do.
std::string Failures(const std::string& text) {
  std::ostringstream out;
  const Tally tally = Run(Usable(text), {Detail::kFailures, false, false}, out);
  const std::string said = out.str();
  const std::size_t last_line = said.rfind("test.scn: ");
  EXPECT_EQ(tally.failed == 0, last_line == 0);
  return said.substr(0, last_line);
}

class RunnerTest : public testing::Test {
 protected:
  // The module starts once in a process; what that looks like is the sessions' matter.
  static void SetUpTestSuite() { Output(""); }
};

using Runner = RunnerTest;

TEST_F(Runner, PrintsEachRequestWithItsCallsAndItsResult) {
  EXPECT_EQ(Output("install-vrf 1  # the first\nexpect result 0\ninstall-vrf 1\n"),
            "\ninstall-vrf 1\n"
            "    IngressManager::CreateIngress(unit=0, vrf=1, flags=0x0) = 0\n"
            "  => 0\n"
            "  ok: expect result 0\n"
            "\ninstall-vrf 1\n"
            "    IngressManager::CreateIngress(unit=0, vrf=1, flags=0x0) = -8 (Entry exists)\n"
            "  => -8\n"
            "\ntest.scn: 2 requests, 1 expectation, 0 failed\n");
}

TEST_F(Runner, BeginsEveryScenarioOnAnEmptyCard) {
  Output("install-vrf 1\nfail IngressManager::CreateIngress nth=every result=-1\n");
  EXPECT_EQ(Failures("expect empty\ninstall-vrf 1\nexpect result 0\n"), "");
}

TEST_F(Runner, FoldsAlikeRequestsInASummary) {
  EXPECT_EQ(
      Output(
          "say Three VRFs\nfor I in 1..3\n  install-vrf $I\n  expect result 0\nend\ninstall-vrf 3\nshow vrfs intfs\n",
          Detail::kRequests),
      "\n# Three VRFs\n"
      "install-vrf 1 ... 3 (3 requests) => 0\n"
      "install-vrf 3 => -8\n"
      "  vrfs:\n"
      "    vrf 1: flags=0x0\n"
      "    vrf 2: flags=0x0\n"
      "    vrf 3: flags=0x0\n"
      "  intfs: none\n"
      "\ntest.scn: 4 requests, 3 expectations, 0 failed\n");
}

TEST_F(Runner, QuietPrintsFailuresAndTheLastLineOnly) {
  EXPECT_EQ(Output("say Hello\ninstall-vrf 1\nexpect result 0\nexpect result 7\nshow all\n", Detail::kFailures),
            "test.scn:4: failed: expect result 7\n"
            "    expected: 7\n"
            "    found:    0\n"
            "test.scn: 1 request, 2 expectations, 1 failed\n");
}

TEST_F(Runner, ShowsWhatTheModuleLooksAtWhenAsked) {
  const std::string access = "HwEncapsulationResourceManager::ingress_mng()";
  EXPECT_EQ(Output("install-vrf 1\n").find(access), std::string::npos);
  EXPECT_NE(Output("install-vrf 1\n", Detail::kCalls, true).find(access), std::string::npos);
  // Expectations do not depend on what is shown.
  EXPECT_NE(Output("install-vrf 1\nexpect trace\nIngressManager::CreateIngress(unit=0, vrf=1, flags=0x0) = 0\nend\n",
                   Detail::kCalls, true)
                .find(" 0 failed"),
            std::string::npos);
}

TEST_F(Runner, ColoursOnlyWhenAsked) {
  EXPECT_EQ(Output("install-vrf 1\n").find('\033'), std::string::npos);
  EXPECT_NE(Output("install-vrf 1\n", Detail::kCalls, false, true).find("\033[1minstall-vrf 1\033[0m\n"),
            std::string::npos);
}

TEST_F(Runner, AFailedTraceShowsTheDifference) {
  EXPECT_EQ(Failures("destroy-vlan 12\nexpect trace\nlog 7: Destroying*\nlog 4: Gone\nend\n"),
            "test.scn:2: failed: expect trace\n"
            "    - expected, + found:\n"
            "      log 7: Destroying outgoing encapsulation for vlan destination id(12)\n"
            "    - log 4: Gone\n"
            "    + log 3: Couldn't find DestinationIdCorrelator with destination id(12)\n");
}

TEST_F(Runner, AFailedTableShowsTheDifference) {
  EXPECT_EQ(Failures("install-vrf 1\nexpect table vrfs\n  vrf 2: flags=0x0\nend\n"),
            "test.scn:2: failed: expect table vrfs\n"
            "    - expected, + found:\n"
            "    - vrf 2: flags=0x0\n"
            "    + vrf 1: flags=0x0\n");
}

TEST_F(Runner, EveryExpectationCanFail) {
  EXPECT_NE(Failures("install-vrf 1\nexpect result 1\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect throw \"*\"\n"), "");
  EXPECT_NE(Failures("destroy-vlan 1\nexpect log 4\n"), "");
  EXPECT_NE(Failures("destroy-vlan 1\nexpect log 3 \"Couldn't\"\n"), "");
  EXPECT_NE(Failures("destroy-vlan 1\nexpect no log 3\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect call IngressManager::DeleteIngress\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect call \"IngressManager::CreateIngress\"\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect no call\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect notification\n"), "");
  EXPECT_NE(Failures("send 1\nexpect packet \"sent*\"\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect rows vrfs 2\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect empty\n"), "");
  EXPECT_NE(Failures("install-vrf 1\nexpect empty except=intfs\n"), "");
}

TEST_F(Runner, EveryExpectationCanHold) {
  EXPECT_EQ(Failures("install-vrf 1\nexpect call \"IngressManager::CreateIngress(*) = 0\"\n"
                     "expect call IngressManager::CreateIngress\nexpect call\nexpect no log\nexpect no notification\n"
                     "expect rows vrfs 1\nexpect empty except=vrfs\n"
                     "destroy-vlan 1\nexpect log 3 \"Couldn't*id(1)\"\nexpect log 7\nexpect log\nexpect no log 4\n"
                     "expect no call\nexpect result -1\n"),
            "");
}

const std::string kTunnel =
    "install-vrf 1\ninstall-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n"
    "install-mpls 20 vlan=10 lim=eth1 mac=00:00:5e:00:02:01 labels=100 caps=push\n";
const std::string kReplace = "replace-mpls 20 vlan=10 lim=eth2 mac=00:00:5e:00:02:01 labels=200 caps=push";

TEST_F(Runner, ClientsAreTold) {
  EXPECT_EQ(Failures(kTunnel + "client a notify\nclient b empty\n" + kReplace +
                     "\nexpect notification a id=20 port=2\nexpect notification\nexpect no notification b\n"
                     "expect no notification a port=1\n"),
            "");
}

TEST_F(Runner, AClientMayThrow) {
  EXPECT_EQ(Failures(kTunnel + "client a throw \"out of order\"\n" + kReplace +
                     "\nexpect throw \"std::runtime_error: out of order\"\nexpect notification a\n"),
            "");
}

TEST_F(Runner, WhatAClientCallsIsPartOfTheTraceAndIndented) {
  const std::string output = Output(kTunnel + "client a calls destroy-vrf 9 ; client b notify\n" + kReplace + "\n");
  EXPECT_NE(output.find("    log 7: Calling callback for client a.\n"
                        "    client a is told id=20 port=2\n"
                        "    client a calls destroy-vrf 9\n"
                        "      IngressManager::DeleteIngress(unit=0, vrf=9) = -7 (No such entry)\n"
                        "    client a gets -7\n"
                        "    client a calls client b notify\n"),
            std::string::npos)
      << output;
}

TEST_F(Runner, AClientThatIsCalledByItsOwnRequestDoesNotStartOver) {
  EXPECT_EQ(Failures(kTunnel + "client a calls replace-mpls 20 vlan=10 lim=eth3 mac=null labels=7 caps=push\n" +
                     kReplace + "\nexpect notification a port=2\nexpect no notification a port=3\nexpect result 0\n"),
            "");
}

TEST_F(Runner, ClientsOfOneScenarioAreSilentInTheNext) {
  Output(kTunnel + "client left-over notify\n");
  EXPECT_EQ(Failures(kTunnel + kReplace + "\nexpect no notification\nexpect no log 7 \"Calling callback*\"\n"), "");
}

TEST_F(Runner, ShowsThePacketsWayAndFrame) {
  EXPECT_NE(Output(kTunnel + "send 20 ttl=9 tos=0x20 size=22\n")
                .find("send 20 ttl=9 tos=0x20 size=22\n"
                      "    egress 100001: intf=2 mac=00:00:5e:00:02:01 vlan=100 port=eth1 label=none to_cpu=false "
                      "drop=false control=0\n"
                      "    intf 2: vrf=1 vlan=100 mac=00:00:5e:00:01:01 mtu=1500 flags=0x0 tunnel=mpls\n"
                      "    initiator 2: labels=[{flags=0x11, label=100, qos_map=1, exp=0, ttl=255}]\n"
                      "    push label=100 exp=1 ttl=255\n"
                      "    sent through eth1, 44 bytes\n"
                      "    frame 00005e000201 00005e000101 81000064 8847 000643ff "
                      "45200016000000000911c581c0000201c63364010000\n"),
            std::string::npos);
  EXPECT_EQ(Failures(kTunnel + "send 10\nexpect packet \"dropped: destination 10 is a VLAN, not a way to a next hop\"\n"
                               "send 99\nexpect packet \"dropped: destination 99 is not installed\"\n"
                               "expect no packet \"frame*\"\n"),
            "");
}

TEST_F(Runner, FaultsHappenAsPlannedAndGoWhenCleared) {
  EXPECT_EQ(Failures("fail IngressManager::CreateIngress nth=2 result=BCM_E_FULL\ninstall-vrf 1\nexpect result 0\n"
                     "install-vrf 2\nexpect result BCM_E_FULL\ninstall-vrf 2\nexpect result 0\n"
                     "fail IngressManager::CreateIngress nth=every result=-4\ninstall-vrf 3\nexpect result -4\n"
                     "clear-faults\ninstall-vrf 3\nexpect result 0\n"
                     "fail call=1 result=BCM_E_BUSY\ninstall-vrf 4\nexpect result BCM_E_BUSY\n"),
            "");
}

TEST_F(Runner, ShowsWhatDestinationsHold) {
  const std::string output =
      Output(kTunnel + "install-host 30 vlan=10 lim=eth1 mac=00:00:5e:00:02:02\nshow destinations\n");
  EXPECT_NE(output.find("  destinations:\n"
                        "    destination 10: intf=1 egress=0\n"
                        "      intf 1: vrf=1 vlan=100 mac=00:00:5e:00:01:01 mtu=1500 flags=0x0 tunnel=none\n"
                        "      station 100: mask=0xfff mac=00:00:5e:00:01:01 flags=0x0\n"
                        "      association 100: vrf=1\n"
                        "      protocol 100: control=on\n"
                        "    destination 20: intf=2 egress=100001\n"
                        "      intf 2: vrf=1 vlan=100 mac=00:00:5e:00:01:01 mtu=1500 flags=0x0 tunnel=mpls\n"
                        "      initiator 2: labels=[{flags=0x11, label=100, qos_map=1, exp=0, ttl=255}]\n"
                        "      egress 100001: intf=2 mac=00:00:5e:00:02:01 vlan=100 port=eth1 label=none to_cpu=false "
                        "drop=false control=0\n"
                        "    destination 30: intf=1 egress=100002\n"
                        "      egress 100002: intf=1 mac=00:00:5e:00:02:02 vlan=100 port=eth1 label=none to_cpu=false "
                        "drop=false control=0\n"),
            std::string::npos)
      << output;
}

TEST_F(Runner, TheCardIsAsTheScenarioDescribesIt) {
  EXPECT_EQ(
      Failures("card ports=2 lags=1 intfs=2 unit=3 exp-map=9\nexpect rows ports 3\nexpect rows lags 1\n" + kTunnel +
               "expect call \"bcm_mpls_tunnel_initiator_set(unit=3, *qos_map=9*) = 0\"\n"
               "install-vlan 11 lim=vlan101 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n"
               "expect call \"IntfManager::CreateIntf(unit=3, *) = -6 (Table full)\"\n"),
      "");
}

}  // namespace
}  // namespace scenario
