#include <gtest/gtest.h>

#include "diagnosis/Statements.h"
#include "diagnosis/Users.h"
#include "scenario/Run.h"

namespace {

using Names = std::vector<std::string>;

class AQuestion : public testing::Test {
 protected:
  AQuestion() {
    AddStandard(language_);
    diagnosis::AddUsers(language_);
  }

  /// The texts of the rows that a statement shows on a card with a VLAN, two hosts and a tunnel.
  Names Answer(const std::string& statement) {
    const auto parsed =
        scenario::ParseScenario(language_, "users.scn",
                                "install-vrf 1\ninstall-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n"
                                "install-host 20 vlan=10 lim=eth1 mac=02:00:00:00:00:09\n"
                                "install-host 21 vlan=10 lim=eth2 mac=02:00:00:00:00:0b\n"
                                "install-mpls 30 vlan=10 lim=eth1 mac=02:00:00:00:00:0a labels=100,200 caps=push\n"
                                "install-mpls 31 vlan=10 lim=eth3 mac=02:00:00:00:00:0c labels=100 caps=swap\n" +
                                    statement + '\n');
    if (!parsed.complaints.empty()) return {parsed.complaints[0].message};
    struct : scenario::Observer {
      void Took(const scenario::Step& step) override {
        const auto* const shown = std::get_if<scenario::Shown>(&step.content);
        if (shown == nullptr) return;
        for (const auto& table : shown->tables) {
          for (const softcard::Row& row : table.rows) names.push_back(table.name == "usage" ? Text(row) : NameOf(row));
        }
      }
      void Ended(const std::string&, const scenario::Tally&) override {}
      Names names;
    } kept;
    scenario::RunScenario(parsed.scenario, softcard::Card::Get(), {}, kept);
    return kept.names;
  }

  scenario::Language language_;
};

}  // namespace

TEST_F(AQuestion, WhoUsesAPortIsAnsweredByEgressObjectsAndTheirDestinations) {
  EXPECT_EQ(Answer("who port=eth1"), (Names{"egress 100001", "egress 100003", "destination 20", "destination 30"}));
  EXPECT_EQ(Answer("who port=eth9"), Names{});
  EXPECT_EQ(Answer("label 16 port eth9\nlabel 17 pop 1\nlag lag1 eth8,eth9\nlag lag2 eth19\nwho port=eth9"),
            (Names{"label 16", "members lag1"}));
}

TEST_F(AQuestion, WhoUsesAnInterfaceIsAnsweredByAllThatGoesThroughIt) {
  EXPECT_EQ(Answer("who intf=2"), (Names{"intf 2", "egress 100003", "initiator 2", "destination 30"}));
}

TEST_F(AQuestion, WhoUsesALabelIsAnsweredByTunnelsAndSwaps) {
  EXPECT_EQ(Answer("who label=100"), (Names{"egress 100004", "initiator 2", "destination 30", "destination 31"}));
}

TEST_F(AQuestion, WhoUsesAMacIsAnsweredByNeighboursAndRouters) {
  EXPECT_EQ(Answer("who mac=02:00:00:00:00:0b"), (Names{"egress 100002", "destination 21"}));
}

TEST_F(AQuestion, IsOneAtATime) {
  EXPECT_EQ(Answer("who port=eth1 intf=2"), Names{"one field is asked for at a time"});
  EXPECT_EQ(Answer("who"), Names{"what is to be looked for is missing"});
  EXPECT_EQ(Answer("who intf=two"), Names{"\"two\" is no value of intf in intfs"});
}

TEST_F(AQuestion, OfUsageIsAnsweredForEachTableThatCanBeFull) {
  const Names usage = Answer("show usage");
  ASSERT_EQ(usage.size(), 12U);
  EXPECT_EQ(usage[0], "table intfs: used=2 size=16384");
  EXPECT_EQ(usage[1], "table egresses: used=4 size=65536");
  EXPECT_EQ(usage[2], "table initiators: used=1 size=8192");
  EXPECT_EQ(usage[8], "table routes: used=0 size=1000000");
  EXPECT_EQ(usage[9], "table labels: used=0 size=1000000");
  EXPECT_EQ(usage[10], "table attachments: used=0 size=48");
  EXPECT_EQ(usage[11], "table members: used=0 size=8");
}
