#include <gtest/gtest.h>

#include <sstream>

#include "console/TextPrinter.h"
#include "scenario/Run.h"
#include "tests/scenario/Parsed.h"

namespace console {
namespace {

std::string Output(const std::string& text, Detail detail = Detail::kCalls, bool colour = false) {
  std::ostringstream out;
  TextPrinter printer(out, {detail, colour});
  scenario::RunScenario(Usable(text), softcard::Card::Get(), {}, printer);
  return out.str();
}

class TextPrinterTest : public testing::Test {
 protected:
  // The module starts once in a process; what that looks like is the sessions' matter.
  static void SetUpTestSuite() { Output(""); }
};

TEST_F(TextPrinterTest, PrintsEachRequestWithItsCallsAndItsResult) {
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

TEST_F(TextPrinterTest, FoldsAlikeRequestsInASummary) {
  EXPECT_EQ(
      Output(
          "say Three VRFs\nfor I in 1..3\n  install-vrf $I\n  expect result 0\nend\ninstall-vrf 3\nshow vrfs intfs\n",
          Detail::kRequests),
      "\n# Three VRFs\n"
      "install-vrf 1 ... 3 (3 requests) => 0\n"
      "install-vrf 3 => -8\n"
      "    IngressManager::CreateIngress(unit=0, vrf=3, flags=0x0) = -8 (Entry exists)\n"
      "  vrfs:\n"
      "    vrf 1: flags=0x0\n"
      "    vrf 2: flags=0x0\n"
      "    vrf 3: flags=0x0\n"
      "  intfs: none\n"
      "\ntest.scn: 4 requests, 3 expectations, 0 failed\n");
}

TEST_F(TextPrinterTest, QuietPrintsFailuresAndTheLastLineOnly) {
  EXPECT_EQ(Output("say Hello\ninstall-vrf 1\nexpect result 0\nexpect result 7\nshow all\n", Detail::kFailures),
            "test.scn:4: failed: expect result 7\n"
            "    after line 2: install-vrf 1\n"
            "    expected: 7\n"
            "    found:    0\n"
            "test.scn: 1 request, 2 expectations, 1 failed\n");
}

TEST_F(TextPrinterTest, ShowsTheRowsOfDestinations) {
  EXPECT_EQ(Output("install-vrf 1\ninstall-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n"
                   "show destinations\n",
                   Detail::kRequests),
            "install-vrf 1 => 0\n"
            "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01 => 0\n"
            "  destinations:\n"
            "    destination 10: intf=1 egress=0\n"
            "\ntest.scn: 2 requests, 0 expectations, 0 failed\n");
}

TEST_F(TextPrinterTest, IndentsWhatAClientCalls) {
  EXPECT_NE(Output("install-vrf 1\ninstall-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n"
                   "install-mpls 20 vlan=10 lim=eth1 mac=00:00:5e:00:02:01 labels=100 caps=push\n"
                   "client a calls destroy-vrf 9\n"
                   "replace-mpls 20 vlan=10 lim=eth2 mac=00:00:5e:00:02:01 labels=200 caps=push\n")
                .find("    client a calls destroy-vrf 9\n"
                      "      IngressManager::DeleteIngress(unit=0, vrf=9) = -7 (No such entry)\n"
                      "    client a gets -7\n"),
            std::string::npos);
}

TEST_F(TextPrinterTest, ColoursOnlyWhenAsked) {
  EXPECT_EQ(Output("install-vrf 1\n").find('\033'), std::string::npos);
  EXPECT_NE(Output("install-vrf 1\n", Detail::kCalls, true).find("\033[1minstall-vrf 1\033[0m\n"), std::string::npos);
}

TEST_F(TextPrinterTest, ColoursALookupThatFoundNothingLikeAnyRefusal) {
  const std::string output = Output(
      "install-vrf 1\ninstall-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n"
      "fail IntfManager::GetIntfObject result=false\ninstall-host 30 vlan=10 lim=eth1 mac=00:00:5e:00:02:01\n",
      Detail::kCalls, true);
  EXPECT_NE(output.find("\033[31mIntfManager::GetIntfObject(intf=1) = false [injected]\033[0m\n"), std::string::npos);
}

}  // namespace
}  // namespace console
