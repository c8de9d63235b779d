#ifndef TESTS_FAULTS_CASES_H
#define TESTS_FAULTS_CASES_H

#include <vector>

namespace faults {

/// A request in a state of the card, both in the words of the scenario language.
struct Case {
  const char* name;
  std::vector<const char*> before;
  const char* request;
};

extern const std::vector<Case> kCases;

}  // namespace faults

#endif
