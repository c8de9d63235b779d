#ifndef CONSOLE_RUNNER_H
#define CONSOLE_RUNNER_H

#include <iosfwd>

#include "Printer.h"
#include "Scenario.h"

namespace console {

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

}  // namespace console

#endif
