#include <gtest/gtest.h>

#include <iostream>
#include <new>

#include "hal/HalBcmCommon.h"
#include "tests/faults/Cases.h"
#include "tests/model/RequestReader.h"
#include "tests/model/Subject.h"
#include "tests/proof/Idle.h"

using model::Request;
using softcard::Card;

namespace {

model::Registry Records() {
  model::Registry records;
  for (const auto& [dest, record] : HalBcmCommon::GetInstance()->destination_id_correlators) {
    records[dest] = {record.intf_id, record.egress_id};
  }
  return records;
}

/// Works on every card, whatever has happened to it before.
void ExpectThatRequestsWork() {
  const Request install = model::ReadRequest("install-vlan 4000 lim=vlan4000 vrf=1000 mtu=1500 mac=00:00:5e:00:01:09");
  model::Call(model::ReadRequest("install-vrf 1000"));
  EXPECT_EQ(model::Call(install), 0);
  EXPECT_EQ(
      model::Call(model::ReadRequest("install-mpls 4001 vlan=4000 lim=eth9 mac=02:00:00:00:00:09 labels=7,8 caps=4")),
      0);
  EXPECT_EQ(model::Call(model::ReadRequest("destroy-mpls 4001")), 0);
  EXPECT_EQ(model::Call(model::ReadRequest("destroy-vlan 4000")), 0);
}

/// Whether the request has an `nth` allocation, which then has failed.
bool FailsAt(long nth, const std::vector<Request>& before, const Request& request) {
  model::Subject subject;
  const softcard::Record record(Card::Get().log(), softcard::CallLog::Recording::kNothing);
  for (const auto& earlier : before) subject.Make(earlier);
  const auto records = Records();
  bool thrown = false;
  allocations::FailNth(nth);
  try {
    model::Call(request);
  } catch (const std::bad_alloc&) {
    thrown = true;
  } catch (const std::exception&) {
    // Of the port lookup, or of a client.
  }
  const bool failed = allocations::HasFailed();
  allocations::FailNth(0);
  EXPECT_EQ(thrown, failed);
  if (failed) {
    EXPECT_EQ(Records(), records);
  }
  ExpectThatRequestsWork();
  return failed;
}

}  // namespace

TEST(AFailedAllocation, ReachesTheCallerFromEveryPlaceAndLeavesNothingBroken) {
  long failures = 0;
  for (const auto& tried : faults::kCases) {
    std::vector<Request> before;
    for (const auto* line : tried.before) before.push_back(model::ReadRequest(line));
    const Request request = model::ReadRequest(tried.request);
    // The registry refuses the record of a destination that is there, and nobody frees it.
    const bool refused = request.operation == model::Operation::kInstallVlan && before.size() > 1;
    const long live = LiveBlocksWhenIdle();
    for (long nth = 1;; ++nth) {
      const bool failed = FailsAt(nth, before, request);
      const long leaked = LiveBlocksWhenIdle() - live;
      ASSERT_EQ(leaked, !failed && refused ? 1 : 0) << tried.name << ", allocation " << nth;
      ASSERT_FALSE(HasFailure()) << tried.name << ", allocation " << nth;
      if (!failed) break;
      ++failures;
    }
  }
  std::cout << failures << " allocations failed\n";
}
