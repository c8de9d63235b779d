#ifndef CONSOLE_JUNIT_REPORT_H
#define CONSOLE_JUNIT_REPORT_H

#include <map>
#include <string>
#include <utility>

#include "scenario/Step.h"

namespace console {

/// Keeps what a JUnit report says of a run: each line with an expectation is a test case, which fails when it does so
/// in any round of the loops around it.
class JUnitReport : public scenario::Observer {
 public:
  void Took(const scenario::Step& step) override;
  void Ended(const std::string&, const scenario::Tally&) override {}

  /// A <testsuite> element.
  std::string Suite(const std::string& file) const;
  /// One for a scenario that did not run to its end.
  static std::string ErrorSuite(const std::string& file, const std::string& reason);
  /// The whole report.
  static std::string Report(const std::string& suites);

 private:
  struct Case {
    std::string source;
    unsigned long failures = 0;
    std::string first;  ///< of the failures
  };

  std::map<std::pair<std::string, unsigned>, Case> cases_;  ///< by file and line
};

}  // namespace console

#endif
