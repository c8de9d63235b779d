#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>

#include "bcm/error.h"
#include "diagnosis/Refusals.h"
#include "tests/scenario/Parsed.h"

using diagnosis::Attempt;
using diagnosis::Refusals;

namespace {

const char kVlan[] = "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01";

Refusals OfPush() {
  return diagnosis::RefuseEachCall(
      TheLanguage(), softcard::Card::Get(),
      {{"install-vrf 1", kVlan}, "install-mpls 20 vlan=10 lim=eth1 mac=02:00:00:00:00:01 labels=100,200 caps=push"});
}

}  // namespace

TEST(TheRefusals, LeaveOutNoCallThatCanBeRefused) {
  const Refusals refusals = OfPush();
  std::vector<std::string> expected;
  for (const calls::Call& call : CallsOf(refusals.unhindered)) {
    if (call.function->can_be_refused()) expected.emplace_back(call.function->name);
  }
  std::vector<std::string> refused;
  for (const auto& refusal : refusals.refused) refused.emplace_back(refusal.call.function->name);
  EXPECT_EQ(refused, expected);
  EXPECT_EQ(refused.back(), "EgressManager::CreateEgress");
}

TEST(ARefusal, IsOfTheCallWithItsNumberAndOfThatOneAlone) {
  for (const auto& refusal : OfPush().refused) {
    const auto calls = CallsOf(refusal.attempt);
    for (unsigned long number = 1; number <= calls.size(); ++number) {
      EXPECT_EQ(calls[number - 1].injected, number == refusal.number) << refusal.call.function->name;
    }
    EXPECT_EQ(std::get<std::int64_t>(calls.at(refusal.number - 1).result), refusal.status == "false" ? 0 : BCM_E_FAIL);
  }
}

TEST(ARefusal, ShowsWhatTheRequestReturnedAndTheRowsBeforeAndAfter) {
  const Refusals refusals = OfPush();
  EXPECT_EQ(refusals.unhindered.trace.result.Text(), "0");
  EXPECT_EQ(softcard::NameOf(diagnosis::Without(refusals.unhindered.after, refusals.unhindered.before).at(0)),
            "intf 2");
  const Attempt& last = refusals.refused.back().attempt;
  EXPECT_EQ(last.trace.result.Text(), "-1");
  EXPECT_EQ(softcard::Texts(last.before), softcard::Texts(last.after));
  EXPECT_FALSE(last.before.empty());
}

TEST(ALookup, IsRefusedAsNotFoundAndEveryOtherCallAsFailed) {
  EXPECT_EQ(diagnosis::RefusalBy(*calls::FindFunction("IntfManager::GetIntfObject")), "false");
  EXPECT_EQ(diagnosis::RefusalBy(*calls::FindFunction("IntfManager::CreateIntf")), "BCM_E_FAIL");
}

TEST(AnAttempt, SaysWhyLinesAreNoScenario) {
  EXPECT_THROW(diagnosis::Try(TheLanguage(), softcard::Card::Get(), {{"install-vrf one"}, "destroy-vrf 1"}),
               std::invalid_argument);
}
