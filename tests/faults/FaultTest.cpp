#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>

#include "tests/faults/Cases.h"
#include "tests/model/RequestReader.h"
#include "tests/model/Signatures.h"
#include "tests/model/Subject.h"

using faults::Case;
using model::Fault;
using model::Request;
using model::Result;

namespace {

/// The results that a call of this kind can give, one for each class that the module may tell apart; all of them, or
/// those that a bounded run takes for pairs.
std::vector<int> Classes(Result result, bool all) {
  std::vector<int> classes;
  switch (result) {
    case Result::kNothing: return {};
    case Result::kFound: return {0};  // "found" for an interface that is not there is no answer a card gives
    case Result::kPredicate: return {0, 1, -4};
    case Result::kNumber: return {0, 7, 65636, -1};
    case Result::kStatus: classes = {0, 1}; break;
    case Result::kId: classes = {0, 1, 77}; break;
  }
  if (!all) {
    classes.insert(classes.end(), {-4, -16});
    return classes;
  }
  for (int rv = -1; rv >= -19; --rv) classes.push_back(rv);
  classes.push_back(-1000);  // of no SDK's table
  return classes;
}

struct Call {
  std::string line;
  Result result;
};

/// The calls of a transcript; the fault plan numbers them from 1.
std::vector<Call> Calls(const std::vector<std::string>& transcript) {
  std::vector<Call> calls;
  for (const auto& line : transcript) {
    const size_t parenthesis = line.find('(');
    if (parenthesis == std::string::npos) continue;
    for (const auto& signature : model::kSignatures) {
      if (line.compare(0, parenthesis, signature.function) == 0) calls.push_back({line, signature.result});
    }
  }
  return calls;
}

/// Whether the call shows the result that was planned for it.
bool Gave(const Call& call, int result) {
  const std::string shown = call.line.substr(call.line.rfind(") = ") + 4);
  if (call.result == Result::kFound) return shown == "false";
  return static_cast<int>(std::strtoll(shown.c_str(), nullptr, 10)) == result;
}

class Faults : public testing::TestWithParam<size_t> {
 protected:
  /// The transcript of the case's request under these faults. The model has followed it, through the request, through
  /// the same one without faults, and through taking the destination away.
  std::vector<std::string> Run(const std::vector<Fault>& planned) {
    model::Subject subject;
    const Case& tried = faults::kCases[GetParam()];
    Request request = model::ReadRequest(tried.request);
    try {
      for (const auto* line : tried.before) subject.Run(model::ReadRequest(line));
      request.faults = planned;
      auto transcript = subject.Run(request);
      request.faults.clear();
      if (planned.size() < 2) {
        subject.Run(request);
        for (const auto* last : {"destroy-host ", "destroy-mpls ", "destroy-vlan "}) {
          subject.Run(model::ReadRequest(last + std::to_string(request.dest)));
        }
      }
      return transcript;
    } catch (const model::Difference& difference) {
      std::vector<Request> scenario;
      for (const auto* line : tried.before) scenario.push_back(model::ReadRequest(line));
      request.faults = planned;
      scenario.push_back(request);
      ADD_FAILURE() << Scenario(scenario) << difference.what();
      return {};
    }
  }
};

}  // namespace

TEST_P(Faults, OfEveryCallAloneAndInPairsLeadToTheRequiredCallsLogLinesAndRecords) {
  // "none", "telling" (the default) or "all" classes.
  const char* const setting = std::getenv("PROOF_PAIRS");
  const std::string pairs_of = setting ? setting : "telling";
  const bool full = pairs_of == "all";
  long singles = 0, pairs = 0;
  const auto calls = Calls(Run({}));
  for (unsigned first = 1; first <= calls.size() && !HasFailure(); ++first) {
    for (const int result : Classes(calls[first - 1].result, true)) {
      const auto after = Calls(Run({{"", first, result}}));
      ++singles;
      if (HasFailure()) return;
      ASSERT_TRUE(Gave(after[first - 1], result)) << after[first - 1].line << ", not " << result;
      const auto in_pairs = Classes(calls[first - 1].result, full);
      if (pairs_of == "none" || std::find(in_pairs.begin(), in_pairs.end(), result) == in_pairs.end()) continue;
      for (unsigned second = first + 1; second <= after.size(); ++second) {
        for (const int other : Classes(after[second - 1].result, full)) {
          Run({{"", first, result}, {"", second, other}});
          ++pairs;
        }
      }
    }
  }
  std::cout << singles << " single faults and " << pairs << " pairs of \"" << faults::kCases[GetParam()].request
            << "\"\n";
}

INSTANTIATE_TEST_SUITE_P(Case, Faults, testing::Range(size_t{0}, faults::kCases.size()), [](const auto& index) {
  std::string name;
  for (const char* c = faults::kCases[index.param].name; *c; ++c) {
    if (std::isalnum(static_cast<unsigned char>(*c))) {
      name += *c;
    } else if (!name.empty() && name.back() != '_' && *c == ' ') {
      name += '_';
    }
  }
  return name;
});
