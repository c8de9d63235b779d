#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <iostream>

#include "tests/model/Generator.h"
#include "tests/model/Subject.h"

using namespace model;

namespace {

long FromEnvironment(const char* name, long otherwise) {
  const char* const text = std::getenv(name);
  return text ? std::strtol(text, nullptr, 10) : otherwise;
}

constexpr int kLength = 60;

/// What the first difference is; empty when there is none.
std::string DifferenceIn(const std::vector<Request>& requests) {
  Subject subject;
  for (const auto& request : requests) {
    try {
      subject.Run(request);
    } catch (const Difference& difference) {
      return RequestText(request) + '\n' + difference.what();
    }
  }
  return {};
}

}  // namespace

TEST(ModuleAndModel, AgreeOnEveryCallLogLineResultAndRecordOfRandomRequests) {
  const long requests = FromEnvironment("PROOF_REQUESTS", 60000);
  const long seed = FromEnvironment("PROOF_SEED", 1);
  const auto start = std::chrono::steady_clock::now();
  for (long done = 0; done < requests; done += kLength) {
    const long sequence_seed = seed + done / kLength;
    const auto sequence = Generator(static_cast<unsigned long>(sequence_seed)).Sequence(kLength);
    const std::string difference = DifferenceIn(sequence);
    if (difference.empty()) continue;
    const auto shrunk = Shrink(sequence, [](const auto& candidate) { return !DifferenceIn(candidate).empty(); });
    FAIL() << "seed " << sequence_seed << ", shrunk to this scenario:\n\n"
           << Scenario(shrunk) << "\nat its request " << DifferenceIn(shrunk);
  }
  if (requests >= 60000) {
    EXPECT_EQ(Rules::Get().Unreached(), std::vector<std::string>());
  }
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  std::cout << requests << " random requests in " << taken.count() << " s\n";
}
