#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "console/Processes.h"
#include "console/SweepPrinters.h"
#include "diagnosis/Statements.h"
#include "diagnosis/SweptText.h"

using console::Processes;
using diagnosis::Ending;
using diagnosis::SweepOptions;
using diagnosis::SweepOutcome;
using diagnosis::SweptRequest;

namespace {

#define VLAN "install-vlan 10 lim=vlan100 vrf=0 mtu=1500 mac=00:00:5e:00:01:01\n"

std::vector<SweptRequest> Swept(const std::string& text, const SweepOptions& options = {}) {
  static diagnosis::Ledger ledger;
  static scenario::Language language;
  if (language.statements().empty()) {
    AddStandard(language);
    AddAudit(language, ledger);
  }
  auto parsed = scenario::ParseScenario(language, "test.scn", text);
  EXPECT_TRUE(parsed.complaints.empty());
  parsed.scenario.watchers.insert(&ledger);
  Processes processes(10);
  std::vector<SweptRequest> requests;
  diagnosis::Sweep(parsed.scenario, softcard::Card::Get(), ledger, options, processes,
                   [&](const SweptRequest& request) { requests.push_back(request); });
  return requests;
}

std::string Calls(const SweepOutcome& outcome) {
  std::string text;
  for (const auto& call : outcome.refused) text += (text.empty() ? "" : ", ") + call.Text();
  return text;
}

}  // namespace

TEST(AProcess, HandsBackItsReportWhateverItsSize) {
  const Ending ending = console::InItsOwnProcess([] { return std::string(1000000, 'x'); });
  EXPECT_EQ(ending.report, std::string(1000000, 'x'));
  EXPECT_EQ(ending.crash, "");
}

TEST(AProcess, EndsInTheOrderInWhichItBegan) {
  Processes processes;
  for (int i = 0; i < 5; ++i) {
    if (processes.Begin()) {
      usleep(static_cast<useconds_t>((5 - i) * 1000));
      processes.End(std::to_string(i));
    }
  }
  for (int i = 0; i < 5; ++i) EXPECT_EQ(processes.Next().report, std::to_string(i));
  EXPECT_GE(processes.most(), 1U);
}

TEST(AProcess, TellsHowItCrashed) {
  EXPECT_EQ(console::InItsOwnProcess([]() -> std::string { std::exit(std::raise(SIGKILL)); }).crash, "crashed: Killed");
  testing::internal::CaptureStderr();
  EXPECT_EQ(console::InItsOwnProcess([]() -> std::string { throw std::runtime_error("no"); }).crash,
            "did not end as it should");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "softcard: no\n");
}

TEST(AProcess, IsEndedWhenItTakesTooLong) {
  Processes processes(1);
  if (processes.Begin()) {
    while (true) pause();
  }
  EXPECT_EQ(processes.Next().crash, "crashed: Alarm clock");
}

TEST(ASweep, RefusesEachCallOfEachRequestAndLeavesTheRunAsItIs) {
  const auto requests =
      Swept(VLAN "expect result 5\ninstall-host 20 vlan=10 lim=eth1 mac=02:00:00:00:00:01\nsay over\n");
  ASSERT_EQ(requests.size(), 2U);
  EXPECT_EQ(requests[1].text, "install-host 20 vlan=10 lim=eth1 mac=02:00:00:00:00:01");
  EXPECT_EQ(requests[1].unhindered.result, "0");
  ASSERT_EQ(requests[1].refusals.size(), 7U);
  const SweepOutcome& last = requests[1].refusals.back();
  EXPECT_EQ(Calls(last), "7. EgressManager::CreateEgress = -11 (Operation failed)");
  EXPECT_EQ(last.result, "-1");
  EXPECT_EQ(last.log.back().text, "Couldn't install outgoing encapsulation for host destination id(20)");
  EXPECT_EQ(last.again, "0");
  EXPECT_EQ(last.destroy, "");
  EXPECT_TRUE(requests[1].IsHarmless(last));
}

TEST(ASweep, TellsWhatARefusalLeavesAndThatTheRequestFailsAgain) {
  const auto requests = Swept(VLAN
                              "install-mpls 20 vlan=10 lim=eth1 mac=02:00:00:00:00:01 labels=100 caps=push\n"
                              "replace-mpls 20 vlan=10 lim=eth1 mac=02:00:00:00:00:01 labels=200 caps=push\n");
  for (const SweepOutcome& refusal : requests.at(2).refusals) {
    if (refusal.refused[0].function->name != std::string("IntfManager::UpdateIntf")) continue;
    ASSERT_EQ(refusal.findings.size(), 1U);
    EXPECT_EQ(refusal.findings[0].problem, "its interface 2 has no tunnel initiator");
    EXPECT_EQ(refusal.again, "-1");
    EXPECT_EQ(refusal.destroy, "0");
    EXPECT_TRUE(requests[2].FailsAgain(refusal));
    EXPECT_FALSE(requests[2].CannotBeDestroyed(refusal));
    return;
  }
  FAIL() << "the update of the interface was not refused";
}

TEST(ASweep, TellsThatADestinationCanNoLongerBeDestroyed) {
  const auto requests =
      Swept("install-vrf 1\n" VLAN "replace-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n");
  console::SweepTally tally;
  for (const SweptRequest& request : requests) tally.Add(request);
  EXPECT_EQ(tally.requests, 3U);
  // The lookup, the association or the interface of the other VRF is refused.
  EXPECT_EQ(tally.cannot_be_destroyed, 3U);
}

TEST(ASweep, RefusesAfterAFirstCallThoseThatFollowIt) {
  const auto requests = Swept(VLAN, {true, false});
  unsigned pairs = 0;
  for (const SweepOutcome& refusal : requests.at(0).refusals) {
    if (refusal.refused.size() != 2) continue;
    ++pairs;
    EXPECT_LT(refusal.refused[0].number, refusal.refused[1].number);
  }
  EXPECT_GT(pairs, 10U);
  // What is undone after a refusal can be refused, too.
  const auto undo = [](const SweepOutcome& refusal) {
    return Calls(refusal) ==
           "7. IntfManager::CreateIntf = -11 (Operation failed), "
           "8. MyStationManager::RemoveMyStationVlanEntry = -11 (Operation failed)";
  };
  EXPECT_TRUE(std::any_of(requests[0].refusals.begin(), requests[0].refusals.end(), undo));
}

TEST(ASweep, TriesEveryClassOfResultButTheOneThatTheCallHas) {
  const auto requests = Swept("install-vrf 1\n", {false, true});
  std::vector<std::string> calls;
  for (const SweepOutcome& refusal : requests.at(0).refusals) calls.push_back(Calls(refusal));
  EXPECT_EQ(calls, (std::vector<std::string>{"1. IngressManager::CreateIngress = -11 (Operation failed)",
                                             "1. IngressManager::CreateIngress = -16 (Unavailable)",
                                             "1. IngressManager::CreateIngress = 1"}));
}

TEST(ASweep, KnowsResultsOfEveryKindOfFunction) {
  for (const calls::Function& function : calls::kFunctions) {
    if (!function.can_be_refused()) continue;
    EXPECT_EQ(diagnosis::ResultsOfRefusal(function, false).size(), 1U) << function.name;
    EXPECT_GE(diagnosis::ResultsOfRefusal(function, true).size(), 1U) << function.name;
  }
}

TEST(ABranchReport, IsReadAsItWasWritten) {
  diagnosis::BranchReport report;
  report.request = "a \"quoted\" request \\\nof two lines";
  report.line = 7;
  report.rounds = {{"I", -1}};
  report.outcome.log = {{3, ""}, {7, "text"}};
  report.outcome.findings = {{"object", "problem", "cause", "packet", "remedy"}};
  report.calls = {{2, calls::FindFunction("IntfManager::CreateIntf"), -11}};
  const std::string text = ToText(report);
  EXPECT_EQ(ToText(diagnosis::ReadBranchReport(text)), text);
  EXPECT_EQ(diagnosis::ReadBranchReport(text).request, report.request);
}

TEST(ACrash, StandsInTheMatrixAndInTheSum) {
  SweptRequest request{"test.scn", 1, {}, "destroy-vrf 1", {}, {}};
  request.unhindered.result = "0";
  request.refusals.emplace_back();
  request.refusals[0].crash = "crashed: Segmentation fault";
  std::ostringstream text, json;
  console::SweepText(text).Swept(request);
  EXPECT_NE(text.str().find("  crashed        -        -"), std::string::npos) << text.str();
  console::SweepJson(json).Swept(request);
  EXPECT_NE(json.str().find("\"crash\": \"crashed: Segmentation fault\""), std::string::npos) << json.str();
  console::SweepTally tally;
  tally.Add(request);
  EXPECT_EQ(tally.crash, 1U);
  EXPECT_FALSE(request.IsHarmless(request.refusals[0]));
}

TEST(ASweep, DestroysNothingAfterARequestThatInstallsNothing) {
  const auto requests = Swept("install-vrf 1\n" VLAN "route 1 198.51.100.0/24 10\nno-route 1 198.51.100.0/24\n");
  ASSERT_EQ(requests.size(), 4U);
  for (const SweptRequest& request : {requests[2], requests[3]}) {
    EXPECT_EQ(request.unhindered.destroy, "") << request.text;
    EXPECT_EQ(request.unhindered.crash, "") << request.text;
  }
}
