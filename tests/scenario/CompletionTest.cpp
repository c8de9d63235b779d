#include <gtest/gtest.h>

#include "scenario/Completion.h"
#include "scenario/Session.h"
#include "tests/scenario/Observed.h"

namespace scenario {
namespace {

using Words = std::vector<std::string>;

class CompletionTest : public testing::Test {
 protected:
  void SetUp() override {
    const Observed observed(
        "card ports=3 lags=1\n"
        "install-vrf 1\n"
        "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n"
        "install-host 20 vlan=10 lim=eth1 mac=00:00:5e:00:02:01\n"
        "label 100 20\n");
  }

  Words Complete(const std::string& line) { return Completions(TheLanguage(), softcard::Card::Get(), line); }
};

TEST_F(CompletionTest, TheFirstWordIsAStatement) {
  EXPECT_EQ(Complete("destroy-"), (Words{"destroy-vrf", "destroy-vlan", "destroy-host", "destroy-mpls"}));
  EXPECT_EQ(Complete("  rou"), Words{"route"});
  EXPECT_GT(Complete("").size(), 20U);
  EXPECT_EQ(Complete("teleport"), Words{});
}

TEST_F(CompletionTest, FieldsComeUntilTheyAreThere) {
  EXPECT_EQ(Complete("install-vlan 11 "), (Words{"lim=", "vrf=", "mtu=", "mac=", "caps="}));
  EXPECT_EQ(Complete("install-vlan 11 mtu=1500 m"), Words{"mac="});
}

TEST_F(CompletionTest, ValuesAreWhatTheCardHas) {
  EXPECT_EQ(Complete("destroy-host "), (Words{"10", "20"}));
  EXPECT_EQ(Complete("install-host 30 vlan="), (Words{"vlan=10", "vlan=20"}));
  EXPECT_EQ(Complete("install-host 30 lim=e"), (Words{"lim=eth1", "lim=eth2", "lim=eth3"}));
  EXPECT_EQ(Complete("install-vlan 30 vrf="), Words{"vrf=1"});
  EXPECT_EQ(Complete("no-label "), Words{"100"});
  EXPECT_EQ(Complete("lag lag1 eth1,eth3"), Words{"eth1,eth3"});
}

TEST_F(CompletionTest, ListsGoOnBehindTheComma) {
  EXPECT_EQ(Complete("install-host 30 actions=drop,c"), Words{"actions=drop,cpu"});
  EXPECT_EQ(Complete("install-mpls 30 caps=s"), Words{"caps=swap"});
  EXPECT_EQ(Complete("install-vlan 30 caps=s"), Words{"caps=station-flag"});
}

TEST_F(CompletionTest, StatementsOfTwoWordsAndTables) {
  const Words shown = Complete("show d");
  EXPECT_EQ(shown, (Words{"destination", "destinations"}));
  EXPECT_EQ(Complete("show destination "), (Words{"10", "20"}));
  EXPECT_EQ(Complete("show intfs intf"), (Words{"intfs", "intf="})) << "more tables, or a value of this one";
  EXPECT_EQ(Complete("show egresses po"), (Words{"ports", "port="}));
}

TEST_F(CompletionTest, AlternativesAreToldApartByTheirWords) {
  EXPECT_EQ(Complete("label 100 p"), (Words{"pop", "port"}));
  EXPECT_EQ(Complete("label 100 pop "), Words{"1"});
  EXPECT_EQ(Complete("label 100 port e"), (Words{"eth1", "eth2", "eth3"}));
}

TEST_F(CompletionTest, ExpectationsKnowWhatCanBeNegated) {
  EXPECT_EQ(Complete("expect res"), Words{"result"});
  EXPECT_EQ(Complete("expect no r"), Words{});
  EXPECT_EQ(Complete("expect no lo"), Words{"log"});
  EXPECT_EQ(Complete("expect table vl"), Words{});
  EXPECT_EQ(Complete("expect rows vrf"), Words{"vrfs"});
}

TEST_F(CompletionTest, FaultsKnowFunctionsAndStatuses) {
  EXPECT_EQ(Complete("fail IntfManager::C"), Words{"IntfManager::CreateIntf"});
  EXPECT_EQ(Complete("fail fm_init result=BCM_E_FU"), Words{"result=BCM_E_FULL"});
}

TEST_F(CompletionTest, AnyBytesAreALine) {
  const std::string line = "show \"\t,=e \x80=,, install expect no \"= a=b,c ?";
  for (std::size_t begin = 0; begin < line.size(); ++begin) {
    for (std::size_t end = begin; end <= line.size(); ++end) {
      const std::string part = line.substr(begin, end - begin);
      for (const std::string& word : Complete(part)) EXPECT_FALSE(word.empty()) << part;
    }
  }
}

}  // namespace
}  // namespace scenario
