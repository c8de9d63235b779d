#include <gtest/gtest.h>

#include <algorithm>

#include "diagnosis/Audit.h"
#include "diagnosis/Operations.h"
#include "diagnosis/Refusals.h"
#include "diagnosis/Statements.h"
#include "scenario/Run.h"
#include "scenario/Session.h"
#include "tests/diagnosis/Setups.h"

using diagnosis::Attempt;
using diagnosis::Finding;
using diagnosis::Operation;
using diagnosis::Rows;
using diagnosis::Situation;
using Lines = std::vector<std::string>;

namespace {

class AnAudit : public testing::Test {
 protected:
  AnAudit() {
    AddStandard(language_);
    AddAudit(language_, ledger_);
  }

  Attempt Try(const Situation& situation) {
    return diagnosis::Try(language_, softcard::Card::Get(), situation, &ledger_);
  }
  std::vector<Finding> Findings() const { return diagnosis::Audit(softcard::Card::Get(), ledger_); }
  /// What is found after these lines.
  std::vector<Finding> After(Lines lines) {
    const std::string last = lines.back();
    lines.pop_back();
    Try({lines, last});
    return Findings();
  }
  /// "OBJECT: PROBLEM" of each.
  Lines Problems(const Lines& lines) {
    Lines problems;
    for (const Finding& finding : After(lines)) problems.push_back(finding.object + ": " + finding.problem);
    return problems;
  }

  scenario::Language language_;
  diagnosis::Ledger ledger_;
};

bool AreEqual(const Rows& rows, const Rows& others) { return softcard::Texts(rows) == softcard::Texts(others); }

Lines Join(Lines first, const Lines& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

}  // namespace

TEST_F(AnAudit, FindsEveryResidueOfEveryOperationAndTheRequestThatLeftIt) {
  int residues = 0;
  for (const Operation& operation : diagnosis::Operations()) {
    const Attempt good = Try(operation.situation);
    for (const auto& call : diagnosis::RefuseEachCall(language_, softcard::Card::Get(), operation.situation).refused) {
      Situation hindered = operation.situation;
      hindered.before.push_back("fail call=" + std::to_string(call.number) + " result=" + call.status);
      const Attempt bad = Try(hindered);
      const bool same_result = bad.trace.result.Text() == good.trace.result.Text();
      if (AreEqual(bad.after, same_result ? good.after : bad.before)) continue;
      ++residues;
      const auto findings = Findings();
      const std::string cause =
          "situation:" + std::to_string(hindered.before.size() + 1) + ": " + operation.situation.request;
      EXPECT_TRUE(std::any_of(findings.begin(), findings.end(),
                              [&](const Finding& finding) { return finding.cause.rfind(cause, 0) == 0; }))
          << operation.title << ", " << call.call.function->name << " refused, " << findings.size() << " findings";
    }
  }
  EXPECT_GT(residues, 25);
}

namespace {

/// The situation's line about this destination, as another request: "replace-vlan 10" of "install-vlan 10 lim=...".
std::string LineOf(const Situation& situation, const std::string& request) {
  const std::string id = request.substr(request.find(' '));
  for (const std::string& line : situation.before) {
    const std::size_t at = line.find(' ');
    if (line.compare(at, id.size() + 1, id + ' ') == 0) return request.substr(0, request.find(' ')) + line.substr(at);
  }
  const std::string& line = situation.request;
  return request.substr(0, request.find(' ')) + line.substr(line.find(' '));
}

/// A remedy in lines of the language.
Lines LinesOf(const Situation& situation, const std::string& remedy) {
  const std::string kAgain = ", then the install again", kSame = " with the values that it has";
  if (remedy == "the same request again") return {situation.request};
  if (const auto at = remedy.find(kSame); at != std::string::npos) return {LineOf(situation, remedy.substr(0, at))};
  if (const auto at = remedy.find(kAgain); at != std::string::npos) {
    const std::string destroy = remedy.substr(0, at);
    return {destroy, LineOf(situation, "install" + destroy.substr(destroy.find('-')))};
  }
  if (const auto at = remedy.find(" ..."); at != std::string::npos) {
    return {remedy.substr(0, at) + " mtu=1500 mac=00:00:5e:00:01:01"};
  }
  const std::string kInstall = "install-vlan with ", kDestroy = ", then destroy-vlan";
  if (remedy.rfind(kInstall, 0) == 0) {
    const std::string lim = remedy.substr(kInstall.size(), remedy.find(kDestroy) - kInstall.size());
    return {"install-vlan 99 " + lim + " vrf=1 mtu=1500 mac=00:00:5e:00:01:01", "destroy-vlan 99"};
  }
  return {remedy};
}

}  // namespace

TEST_F(AnAudit, KnowsARemedyForAResidueOnlyIfItRemedies) {
  std::set<std::string> remedies;
  for (const Operation& operation : diagnosis::Operations()) {
    for (const auto& call : diagnosis::RefuseEachCall(language_, softcard::Card::Get(), operation.situation).refused) {
      Lines lines = operation.situation.before;
      lines.push_back("fail call=" + std::to_string(call.number) + " result=" + call.status);
      lines.push_back(operation.situation.request);
      for (const Finding& finding : After(lines)) {
        if (finding.remedy == "none can") continue;
        remedies.insert(finding.remedy);
        const Lines problems = Problems(Join(lines, LinesOf(operation.situation, finding.remedy)));
        EXPECT_EQ(std::count(problems.begin(), problems.end(), finding.object + ": " + finding.problem), 0)
            << operation.title << ", " << call.call.function->name << " refused: " << finding.remedy;
      }
    }
  }
  EXPECT_GE(remedies.size(), 7U);
}

TEST_F(AnAudit, FindsNothingOnACleanCard) {
  for (const Operation& operation : diagnosis::Operations()) {
    Try(operation.situation);
    // A VLAN that moves leaves things behind whatever the card says.
    const bool moves = operation.situation.request.rfind("replace-vlan", 0) == 0;
    EXPECT_EQ(Findings().empty(), !moves) << operation.title;
  }
}

TEST_F(AnAudit, FindsNothingAfterAFailureThatWasUndone) {
  EXPECT_EQ(Problems({VLAN, "fail EgressManager::CreateEgress result=BCM_E_FULL", PUSH}), Lines{});
  EXPECT_EQ(Problems({VLAN, "fail IntfManager::DeleteIntf result=BCM_E_FAIL", "destroy-vlan 10"}), Lines{});
}

TEST_F(AnAudit, NamesTheRequestThePacketAndTheRemedy) {
  const auto findings = After({VLAN, PUSH, "fail IntfManager::DeleteIntf result=BCM_E_FAIL", "destroy-mpls 30"});
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].object, "intf 2");
  EXPECT_EQ(findings[0].problem, "no record accounts for it");
  EXPECT_EQ(findings[0].cause, "situation:6: destroy-mpls 30, where IntfManager::DeleteIntf = -11 (Operation failed)");
  EXPECT_EQ(findings[0].packet, "none meets it, unless an egress object is bound to it");
  EXPECT_EQ(findings[0].remedy, "none can");
}

TEST_F(AnAudit, SeesAHostOnATunnelsInterfaceAsNoOwnerOfIt) {
  EXPECT_EQ(Problems({VLAN, PUSH, "install-host 20 vlan=30 lim=eth1 mac=02:00:00:00:00:09"}), Lines{});
  EXPECT_EQ(Problems({VLAN, PUSH, "install-host 20 vlan=30 lim=eth1 mac=02:00:00:00:00:09", "destroy-mpls 30"}),
            Lines{"destination 20: its interface 2 is gone"});
}

TEST_F(AnAudit, FindsBasesThatAreGone) {
  EXPECT_EQ(Problems({VLAN, HOST, "destroy-vlan 10"}), Lines{"destination 20: its interface 1 is gone"});
  EXPECT_EQ(After(Join({VLAN, HOST, "destroy-vlan 10"}, {"destroy-host 20"})).size(), 0U);
}

TEST_F(AnAudit, FindsAVlanThatCanNoLongerBeDestroyedAndTheWayBack) {
  const Lines moved = {VLAN, "replace-vlan 10 lim=vlan200 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"};
  const auto findings = After(moved);
  ASSERT_FALSE(findings.empty());
  EXPECT_EQ(findings[0].problem, "its VLAN 200 is not associated with VRF 1, so it can no longer be destroyed");
  EXPECT_EQ(findings[0].remedy, "replace-vlan 10 lim=vlan100 vrf=1 ...");
  EXPECT_EQ(Try({moved, "destroy-vlan 10"}).trace.result.Text(), "-1");
  const Lines back = Join(moved, {"replace-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"});
  EXPECT_EQ(Try({back, "destroy-vlan 10"}).trace.result.Text(), "0");
}

TEST_F(AnAudit, BlamesTheMoveForWhatStaysBehindOnTheOldVlan) {
  for (const Finding& finding : After({VLAN, "replace-vlan 10 lim=vlan200 vrf=2 mtu=1500 mac=00:00:5e:00:01:01"})) {
    EXPECT_EQ(finding.cause, "situation:4: replace-vlan 10 lim=vlan200 vrf=2 mtu=1500 mac=00:00:5e:00:01:01");
  }
}

TEST_F(AnAudit, FindsEgressObjectsOnAnotherVlanThanTheirInterface) {
  const auto problems = Problems({VLAN, HOST, "replace-vlan 10 lim=vlan200 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"});
  EXPECT_EQ(std::count(problems.begin(), problems.end(),
                       "destination 20: its egress object is on VLAN 100, its interface on VLAN 200"),
            1);
}

TEST_F(AnAudit, FindsRecordsThatWereRefused) {
  EXPECT_EQ(Problems({VLAN, "install-vlan 10 lim=vlan300 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"}),
            (Lines{"intf 2: no record accounts for it", "station 300: no record accounts for it",
                   "protocol 300: no record accounts for it", "association 300: no record accounts for it"}));
}

TEST_F(AnAudit, FindsAssociationsWhoseVrfIsGone) {
  EXPECT_EQ(Problems({VLAN, "destroy-vrf 1"}), Lines{"association 100: its VRF 1 is gone"});
  EXPECT_EQ(Problems({VLAN, "destroy-vrf 1", "install-vrf 1"}), Lines{});
}

TEST_F(AnAudit, FindsDestinationsThatPacketsAreLedToAndThatAreGone) {
  const Lines ways = {VLAN,
                      HOST,
                      "route 1 10.0.0.0/8 20",
                      "route 1 2001:db8::/32 20",
                      "label 16 20",
                      "attach eth7 20",
                      "label 17 pop 20"};
  EXPECT_EQ(Problems(ways), Lines{});
  const auto findings = After(Join(ways, {"destroy-host 20"}));
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].object, "destination 20");
  EXPECT_EQ(findings[0].problem, "it is not installed; routes, labels and attached ports that lead there: 4");
  EXPECT_EQ(findings[0].cause, "situation:10: destroy-host 20");
  EXPECT_EQ(Problems(Join(ways, {"destroy-host 20", HOST})), Lines{});
}

TEST_F(AnAudit, KnowsRemediesThatRemedy) {
  EXPECT_EQ(Problems({"install-vrf 1", "fail IntfManager::CreateIntf result=BCM_E_FULL",
                      "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"}),
            Lines{"protocol 100: no record accounts for it"});
  EXPECT_EQ(Problems({"install-vrf 1", "fail IntfManager::CreateIntf result=BCM_E_FULL",
                      "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01",
                      "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01", "destroy-vlan 10"}),
            Lines{});
  const Lines without_labels = {VLAN, PUSH, "fail bcm_mpls_tunnel_initiator_set result=BCM_E_FULL",
                                "replace-mpls 30 vlan=10 lim=eth2 mac=02:00:00:00:00:09 labels=300 caps=push"};
  EXPECT_EQ(Problems(without_labels), Lines{"destination 30: its interface 2 has no tunnel initiator"});
  EXPECT_EQ(Problems(Join(without_labels, {"destroy-mpls 30", PUSH})), Lines{});
}

TEST_F(AnAudit, FindsAVlanWithoutAMyStationEntry) {
  const Lines lines = {VLAN, "fail MyStationManager::InsertMyStationVlanEntry result=BCM_E_FULL",
                       "fail IntfManager::DeleteIntf result=BCM_E_BUSY", "destroy-vlan 10"};
  const auto findings = After(lines);
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].problem, "its VLAN 100 has no my-station entry");
  EXPECT_EQ(findings[0].remedy, "replace-vlan 10 with the values that it has");
  EXPECT_EQ(Problems(Join(lines, {"replace-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01"})), Lines{});
}

TEST_F(AnAudit, FindsADroppingTunnelThatIsBoundToAPort) {
  EXPECT_EQ(Problems({VLAN, PUSH " action=drop"}), Lines{});
  // No request leaves one; another module of the card may.
  softcard::Tables& tables = softcard::Card::Get().tables();
  constexpr int kEgress = 100001;
  softcard::Egress egress = *tables.egresses.Find(kEgress);
  egress.port = 2;
  ASSERT_EQ(tables.egresses.Update(kEgress, egress, egress.mac.data(), tables.intfs, tables.ports), 0);
  const auto findings = Findings();
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].object, "destination 30");
  EXPECT_EQ(findings[0].problem, "it drops, and is bound to port eth2");
  EXPECT_EQ(findings[0].remedy, "replace-mpls 30 with the values that it has");
}

TEST_F(AnAudit, KnowsTheRemedyOfALostInterfaceALostEgressObjectAndALostVrf) {
  const char kReinstall[] = "install-vlan 11 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01";
  const Lines lost = {VLAN, HOST, "destroy-vlan 10"};
  EXPECT_EQ(After(lost).at(0).remedy, "destroy-host 20, then the install on a new base");
  EXPECT_EQ(
      Problems(Join(lost, {"destroy-host 20", kReinstall, "install-host 20 vlan=11 lim=eth1 mac=02:00:00:00:00:09"})),
      Lines{});
  const Lines gone = {VLAN, "install-mpls 30 vlan=10 lim=eth2 mac=02:00:00:00:00:09 labels=16 caps=swap",
                      "fail EgressManager::CreateEgress result=BCM_E_FULL",
                      "replace-mpls 30 vlan=10 lim=eth2 mac=02:00:00:00:00:09 labels=0 caps=swap"};
  EXPECT_EQ(After(gone).at(0).remedy, "destroy-mpls 30, then the install again");
  EXPECT_EQ(Problems(Join(gone, {"destroy-mpls 30", PUSH})), Lines{});
  const Lines vrf = {VLAN, "destroy-vrf 1"};
  EXPECT_EQ(After(vrf).at(0).remedy, "install-vrf 1");
}

TEST_F(AnAudit, KnowsTheRemedyOfAVlanWhoseInterfaceIsGone) {
  Try({{VLAN}, HOST});
  // No request leaves one; another module of the card may.
  softcard::Card::Get().tables().intfs.Delete(1);
  const auto findings = Findings();
  ASSERT_EQ(findings.at(0).problem, "its interface 1 is gone");
  EXPECT_EQ(findings.at(0).remedy, "destroy-mpls 10");
}

TEST_F(AnAudit, NamesTheFileOfTheRequestThatLeftIt) {
  auto parsed = scenario::ParseScenario(language_, TEST_FOLDER "/main.scn", "include leftover.inc\n");
  ASSERT_TRUE(parsed.complaints.empty()) << parsed.complaints[0].Text();
  parsed.scenario.watchers.insert(&ledger_);
  struct : scenario::Observer {
    void Took(const scenario::Step&) override {}
    void Ended(const std::string&, const scenario::Tally&) override {}
  } nobody;
  scenario::RunScenario(parsed.scenario, softcard::Card::Get(), {}, nobody);
  EXPECT_EQ(Findings().at(0).cause.rfind(TEST_FOLDER "/leftover.inc:2: install-vlan 10", 0), 0U)
      << Findings().at(0).cause;
}

TEST_F(AnAudit, WatchesOnlyTheScenariosThatAskForIt) {
  EXPECT_TRUE(scenario::ParseScenario(language_, "", "install-vrf 1\n").scenario.watchers.empty());
  EXPECT_EQ(scenario::ParseScenario(language_, "", "audit\n").scenario.watchers.count(&ledger_), 1U);
  EXPECT_EQ(scenario::ParseScenario(language_, "", "expect clean\n").scenario.watchers.count(&ledger_), 1U);
}

TEST_F(AnAudit, OfACardThatLivesOnNamesTheLastRequestsAndForgetsTheOthers) {
  struct : scenario::Observer {
    void Took(const scenario::Step&) override {}
    void Ended(const std::string&, const scenario::Tally&) override {}
  } nobody;
  diagnosis::Ledger ledger(10);
  scenario::Session session(language_, softcard::Card::Get(), {}, {&ledger});
  unsigned line = 0;
  const auto say = [&](const std::string& text) {
    EXPECT_FALSE(session.Do({"live", text + '\n', ++line}, nobody).unusable()) << text;
  };
  const auto cause = [&] { return diagnosis::Audit(softcard::Card::Get(), ledger).at(0).cause; };
  say("install-vrf 1\ninstall-vlan 10 lim=vlan100 vrf=2 mtu=1500 mac=00:00:5e:00:01:01");
  const std::string before = cause();
  for (int i = 0; i < 100; ++i) say("install-vrf 3\ndestroy-vrf 3");
  EXPECT_EQ(cause(), before);
  EXPECT_EQ(before.rfind("live:2: install-vlan 10", 0), 0U) << before;
}

TEST_F(AnAudit, IsAStatementAndAnExpectation) {
  const auto parsed = scenario::ParseScenario(language_, "test.scn", "install-vrf 1\naudit\nexpect clean\n");
  EXPECT_TRUE(parsed.complaints.empty());
  struct Kept : scenario::Observer {
    void Took(const scenario::Step& step) override {
      if (const auto* shown = std::get_if<scenario::Shown>(&step.content)) tables = shown->tables;
    }
    void Ended(const std::string&, const scenario::Tally& ended) override { tally = ended; }
    std::vector<scenario::ShownTable> tables;
    scenario::Tally tally;
  } kept;
  scenario::RunScenario(parsed.scenario, softcard::Card::Get(), {}, kept);
  ASSERT_EQ(kept.tables.size(), 1U);
  EXPECT_EQ(kept.tables[0].name, "findings");
  EXPECT_EQ(kept.tally.expectations, 1U);
  EXPECT_EQ(kept.tally.failed, 0U);
}
