#include <gtest/gtest.h>

#include <algorithm>

#include "tests/scenario/Parsed.h"

namespace scenario {
namespace {

const std::string kScenario =
    "card ports=4\n"
    "say # \"\n"
    "install-vrf 1  # comment\n"
    "for I in 1..2\n"
    "  install-vlan $(10*I) lim=vlan$I vrf=1 mtu=0x5dc mac=00:00:5e:00:01:01+$I caps=1,none\n"
    "  expect trace\n"
    "    log 7: $I*\n"
    "  end\n"
    "end\n"
    "client \"a \\\" b\" calls install-host 3 vlan=0 lim=absent:eth9 mac=null ; client c throw \"x\"\n"
    "fail IntfManager::CreateIntf nth=2 result=BCM_E_FULL\n"
    "fail call=3 result=-1\n"
    "install-mpls 4 vlan=10 lim=cpu mac=null labels=1,2 caps=push action=drop\n"
    "expect no call \"EgressManager*\"\n"
    "send 4 ttl=1\n"
    "route 1 10.0.0.0/8 4\n"
    "label 16 port eth2\n"
    "lag lag1 eth1,eth2\n"
    "inject eth1 dmac=02:00:00:00:00:01 vlan=7 labels=1,2 frame=\"00 01\"\n"
    "expect packet \"dropped: not-routed*\"\n"
    "show all\n";

// Whatever is changed, the parser says where it hurts or takes it.
void ExpectSense(const std::string& text) {
  const ParsedScenario parsed = Parsed(text);
  const auto lines = static_cast<unsigned>(std::count(text.begin(), text.end(), '\n')) + 1;
  for (const Complaint& complaint : parsed.complaints) {
    EXPECT_GE(complaint.line, 1u) << text;
    EXPECT_LE(complaint.line, lines) << text;
    EXPECT_GE(complaint.column, 1u) << text;
    EXPECT_LE(complaint.column, complaint.source.size() + 1) << complaint.Text();
    EXPECT_FALSE(complaint.message.empty()) << text;
  }
}

TEST(Robustness, TheScenarioIsUsableUnchanged) { EXPECT_EQ(Complaints(kScenario), ""); }

TEST(Robustness, AnyByteMayBeAnother) {
  for (std::size_t i = 0; i < kScenario.size(); ++i) {
    for (const char byte : std::string("\0 \n\"#$(=,;0z\xff", 13)) {
      std::string text = kScenario;
      text[i] = byte;
      ExpectSense(text);
    }
  }
}

TEST(Robustness, AnyPieceMayBeMissing) {
  for (std::size_t i = 0; i < kScenario.size(); ++i) {
    for (const std::size_t size : {1, 2, 5, 40}) ExpectSense(std::string(kScenario).erase(i, size));
    ExpectSense(kScenario.substr(0, i));
  }
}

}  // namespace
}  // namespace scenario
