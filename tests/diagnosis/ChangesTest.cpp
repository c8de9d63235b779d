#include <gtest/gtest.h>

#include <algorithm>

#include "diagnosis/Changes.h"
#include "diagnosis/StateDifference.h"
#include "diagnosis/Statements.h"
#include "scenario/Run.h"

namespace {

using Lines = std::vector<std::string>;

const std::string kVlanAndVrf = "install-vrf 1\ninstall-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n";
const std::string kTunnel = "install-mpls 30 vlan=10 lim=eth2 mac=02:00:00:00:00:09 labels=100 caps=push\n";

/// Keeps the tables that are shown.
struct Tables : scenario::Observer {
  void Took(const scenario::Step& step) override {
    if (const auto* shown = std::get_if<scenario::Shown>(&step.content)) {
      for (const auto& table : shown->tables) lines.push_back(table.name + ' ' + std::to_string(table.rows.size()));
    }
  }
  void Ended(const std::string&, const scenario::Tally&) override {}

  Lines lines;
};

class ARun : public testing::Test {
 protected:
  ARun() {
    AddStandard(language_);
    AddDifferences(language_, mark_);
    scenario::Performer(softcard::Card::Get()).Start();
  }

  void Run(const std::string& text, scenario::Observer& observer) {
    const auto parsed = scenario::ParseScenario(language_, "test.scn", text);
    ASSERT_TRUE(parsed.complaints.empty()) << parsed.complaints[0].Text();
    scenario::RunScenario(parsed.scenario, softcard::Card::Get(), {}, observer);
  }
  /// "TABLE NUMBER" of each table that is shown.
  Lines Shown(const std::string& text) {
    Tables tables;
    Run(text, tables);
    return tables.lines;
  }
  /// The rows of the card after these lines.
  diagnosis::Rows After(const std::string& text) {
    Shown(text);
    return diagnosis::AllRows(softcard::Card::Get());
  }

  scenario::Language language_;
  diagnosis::Mark mark_;
};

}  // namespace

TEST_F(ARun, ShowsChangesSinceTheBeginningTheMarkOrTheLastShow) {
  EXPECT_EQ(Shown("install-vrf 1\nshow changes\n"), (Lines{"took 0", "put 1"}));
  EXPECT_EQ(Shown("install-vrf 1\nmark\ninstall-vrf 2\ndestroy-vrf 1\nshow changes\n"), (Lines{"took 1", "put 1"}));
  EXPECT_EQ(Shown("install-vrf 1\nshow changes\nshow changes\n"), (Lines{"took 0", "put 1", "took 0", "put 0"}));
}

TEST_F(ARun, BeginsWithNoMarkOfTheRunBefore) {
  Shown("install-vrf 1\nmark\n");
  EXPECT_EQ(Shown("install-vrf 1\nshow changes\n"), (Lines{"took 0", "put 1"}));
}

TEST_F(ARun, KnowsTheRowsThatEachRequestTookAndPut) {
  std::vector<std::pair<unsigned, Lines>> told;
  diagnosis::RequestChanges changes(softcard::Card::Get(),
                                    [&](const scenario::Step& step, const diagnosis::Changes& told_changes) {
                                      Lines lines;
                                      for (const auto& row : told_changes.took) lines.push_back("- " + NameOf(row));
                                      for (const auto& row : told_changes.put) lines.push_back("+ " + NameOf(row));
                                      told.emplace_back(step.line, lines);
                                    });
  Run(kVlanAndVrf + kTunnel +
          "replace-vlan 10 lim=vlan200 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\ndestroy-mpls 31\ndestroy-mpls 30\n",
      changes);
  const std::vector<std::pair<unsigned, Lines>> expected = {
      {1, {"+ vrf 1"}},
      {2, {"+ intf 1", "+ station 100", "+ association 100", "+ protocol 100", "+ destination 10"}},
      {3, {"+ intf 2", "+ egress 100001", "+ initiator 2", "+ destination 30"}},
      {4, {"- intf 1", "+ intf 1", "+ station 200"}},
      {6, {"- intf 2", "- egress 100001", "- initiator 2", "- destination 30"}}};
  EXPECT_EQ(told, expected);
}

TEST_F(ARun, KnowsTheRowsOfTablesThatStatementsFillByThemselves) {
  std::vector<std::pair<unsigned, Lines>> told;
  diagnosis::RequestChanges changes(softcard::Card::Get(),
                                    [&](const scenario::Step& step, const diagnosis::Changes& told_changes) {
                                      Lines lines;
                                      for (const auto& row : told_changes.took) lines.push_back("- " + Text(row));
                                      for (const auto& row : told_changes.put) lines.push_back("+ " + Text(row));
                                      told.emplace_back(step.line, lines);
                                    });
  Run("route 1 10.0.0.0/8 20\nroute 2 10.0.0.0/8 20\nroute 1 10.0.0.0/8 21\nroute 1 10.0.0.0/8 21\n"
      "no-route 1 10.0.0.0/8\nno-route 1 10.0.0.0/8\nlabel 16 port eth3\nlabel 16 20\nno-label 16\nattach eth4 30\n"
      "no-attach eth4\nlag lag1 eth5,eth6\n",
      changes);
  const std::vector<std::pair<unsigned, Lines>> expected = {
      {1, {"+ route 10.0.0.0/8: vrf=1 destination=20"}},
      {2, {"+ route 10.0.0.0/8: vrf=2 destination=20"}},
      {3, {"- route 10.0.0.0/8: vrf=1 destination=20", "+ route 10.0.0.0/8: vrf=1 destination=21"}},
      {5, {"- route 10.0.0.0/8: vrf=1 destination=21"}},
      {7, {"+ label 16: action=pop-port to=eth3"}},
      {8, {"- label 16: action=pop-port to=eth3", "+ label 16: action=destination to=20"}},
      {9, {"- label 16: action=destination to=20"}},
      {10, {"+ attachment eth4: destination=30"}},
      {11, {"- attachment eth4: destination=30"}},
      {12, {"+ members lag1: ports=eth5,eth6"}}};
  // The module's start has lines of its own.
  told.erase(told.begin(), std::find_if(told.begin(), told.end(), [](const auto& one) { return one.first > 0; }));
  EXPECT_EQ(told, expected);
}

TEST_F(ARun, TellsOfEveryRowThatTheWholeCardsComparisonTells) {
  diagnosis::Rows followed;
  diagnosis::RequestChanges changes(softcard::Card::Get(), [&](const scenario::Step&, const diagnosis::Changes& told) {
    followed = diagnosis::Without(followed, told.took);
    followed.insert(followed.end(), told.put.begin(), told.put.end());
  });
  Run(kVlanAndVrf + kTunnel +
          "install-host 20 vlan=10 lim=eth1 mac=02:00:00:00:00:09\nfail IntfManager::UpdateIntf result=BCM_E_FAIL\n"
          "replace-mpls 30 vlan=10 lim=eth2 mac=02:00:00:00:00:09 labels=16,17 caps=swap\n"
          "replace-mpls 30 vlan=10 lim=eth2 mac=02:00:00:00:00:09 labels=16 caps=swap\n",
      changes);
  const auto all = diagnosis::AllRows(softcard::Card::Get());
  EXPECT_TRUE(diagnosis::Without(all, followed).empty());
  EXPECT_TRUE(diagnosis::Without(followed, all).empty());
}

TEST_F(ARun, IsComparedWithAnotherDestinationByDestination) {
  const diagnosis::Rows before =
      After(kVlanAndVrf + "install-host 20 vlan=10 lim=eth1 mac=02:00:00:00:00:09\ninstall-vrf 3\n");
  const diagnosis::Rows after = After(kVlanAndVrf + "install-host 20 vlan=10 lim=eth1 mac=02:00:00:00:00:0a\n" +
                                      kTunnel + "replace-vlan 10 lim=vlan100 vrf=1 mtu=9000 mac=00:00:5e:00:01:02\n");
  Lines lines;
  for (const auto& group : diagnosis::ByDestination(before, after)) {
    for (const auto& [took, put] : group.rows) {
      lines.push_back((group.destination ? std::to_string(*group.destination) : "nobody") + ' ' +
                      NameOf(took ? *took : *put) +
                      (took && put ? " changed"
                       : took      ? " removed"
                                   : " added"));
    }
  }
  EXPECT_EQ(lines, (Lines{"10 intf 1 changed", "10 station 100 changed", "20 egress 100001 changed", "30 intf 2 added",
                          "30 egress 100002 added", "30 initiator 2 added", "30 destination 30 added",
                          "nobody vrf 3 removed"}));
  EXPECT_TRUE(diagnosis::ByDestination(after, after).empty());
}
