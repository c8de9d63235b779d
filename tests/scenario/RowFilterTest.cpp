#include <gtest/gtest.h>

#include "tests/scenario/Observed.h"

namespace scenario {
namespace {

const char kCard[] =
    "install-vrf 1\ninstall-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n"
    "install-host 20 vlan=10 lim=eth1 mac=02:00:00:00:00:09\n"
    "install-host 21 vlan=10 lim=eth2 mac=02:00:00:00:00:09 actions=drop\n"
    "install-mpls 30 vlan=10 lim=eth1 mac=02:00:00:00:00:0a labels=100,200 caps=push\n";

/// The names of the rows that a statement shows behind these lines.
std::vector<std::string> ShownBy(const std::string& statement) {
  const auto parsed = ParseScenario(TheLanguage(), "filter.scn", kCard + statement + '\n');
  EXPECT_TRUE(parsed.complaints.empty()) << parsed.complaints[0].Text();
  const Observed observed(parsed.scenario);
  std::vector<std::string> names;
  for (const auto& table : std::get<Shown>(observed.At(6).content).tables) {
    for (const softcard::Row& row : table.rows) names.push_back(NameOf(row));
  }
  return names;
}

std::string ComplaintOf(const std::string& statement) {
  const auto parsed = ParseScenario(TheLanguage(), "filter.scn", statement + '\n');
  return parsed.complaints.empty() ? "" : parsed.complaints[0].message;
}

using Names = std::vector<std::string>;

TEST(RowFilterTest, ShowsTheRowsThatHaveAllValues) {
  EXPECT_EQ(ShownBy("show egresses port=eth1"), (Names{"egress 100001", "egress 100003"}));
  EXPECT_EQ(ShownBy("show egresses port=eth1 vlan=100 intf=1"), Names{"egress 100001"});
  EXPECT_EQ(ShownBy("show egresses drop=true"), Names{"egress 100002"});
  EXPECT_EQ(ShownBy("show egresses label=none mac=02:00:00:00:00:0a"), Names{"egress 100003"});
  EXPECT_EQ(ShownBy("show intfs vrf=1 vlan=100 tunnel=mpls"), Names{"intf 2"});
  EXPECT_EQ(ShownBy("show intfs vrf=2"), Names{});
}

TEST(RowFilterTest, KnowsKeysAndLabelsInAStack) {
  EXPECT_EQ(ShownBy("show egresses egress=100002"), Names{"egress 100002"});
  EXPECT_EQ(ShownBy("show initiators label=200"), Names{"initiator 2"});
  EXPECT_EQ(ShownBy("show initiators labels=201"), Names{});
}

TEST(RowFilterTest, RefusesWhatNoRowCanHave) {
  EXPECT_EQ(ComplaintOf("show egresses prot=eth1"), "egresses has no column \"prot\"; did you mean \"port\"?");
  EXPECT_EQ(ComplaintOf("show intfs vlan=hundred"), "\"hundred\" is no value of vlan in intfs");
  EXPECT_EQ(ComplaintOf("show intfs vlan="), "\"\" is no value of vlan in intfs");
  EXPECT_EQ(ComplaintOf("show intfs egresses vlan=1"), "values are asked of one table");
  EXPECT_EQ(ComplaintOf("show vlan=1"), "\"show\" needs TABLE...");
  EXPECT_EQ(ComplaintOf("show"), "\"show\" needs TABLE...");
}

}  // namespace
}  // namespace scenario
