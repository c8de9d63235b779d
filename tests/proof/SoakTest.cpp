#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <iostream>

#include "hal/HalBcmCommon.h"
#include "tests/model/Generator.h"
#include "tests/model/Subject.h"
#include "tests/proof/Idle.h"

namespace {

/// Makes random requests on a card of their own. Returns how many.
long Make(unsigned long seed) {
  model::Subject subject;
  const softcard::Record record(softcard::Card::Get().log(), softcard::CallLog::Recording::kNothing);
  long made = 0;
  for (const auto& request : model::Generator(seed).Sequence(100)) {
    // Installing a VLAN a second time leaks the record that is refused, and callbacks may do that, too.
    const bool leaks = request.operation == model::Operation::kInstallVlan &&
                       HalBcmCommon::GetInstance()->destination_id_correlators.count(static_cast<int>(request.dest));
    if (leaks || request.kind == model::ClientKind::kCalls) continue;
    subject.Make(request);
    ++made;
  }
  return made;
}

}  // namespace

TEST(ALongRunOfRandomRequests, LeavesNothingAllocatedOnceTheCardIsEmptied) {
  const char* const text = std::getenv("PROOF_SOAK");
  const long requests = text ? std::strtol(text, nullptr, 10) : 60000;
  const auto start = std::chrono::steady_clock::now();
  long made = Make(1);  // what is made once and kept is made here
  const long live = LiveBlocksWhenIdle();
  for (unsigned long seed = 2; made < requests; ++seed) {
    made += Make(seed);
    ASSERT_EQ(LiveBlocksWhenIdle(), live) << "seed " << seed;
  }
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  std::cout << made << " requests in " << taken.count() << " s, " << live << " blocks allocated after each 100\n";
}
