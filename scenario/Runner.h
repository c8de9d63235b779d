#ifndef SCENARIO_RUNNER_H
#define SCENARIO_RUNNER_H

#include <iosfwd>

#include "scenario/Printer.h"
#include "scenario/Scenario.h"

namespace scenario {

struct RunOptions {
  Detail detail = Detail::kCalls;
  bool accesses = false;  ///< show what the module looks at, too
  bool colour = false;
};

struct Tally {
  unsigned long requests = 0;
  unsigned long expectations = 0;
  unsigned long failed = 0;
};

/// Runs a scenario on a fresh card and tells on `out` what happens, in the end with a line that sums it up.
Tally Run(const Scenario& scenario, const RunOptions& options, std::ostream& out);

}  // namespace scenario

#endif
