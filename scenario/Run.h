#ifndef SCENARIO_RUN_H
#define SCENARIO_RUN_H

#include <cstdint>
#include <functional>
#include <map>

#include "scenario/Performer.h"
#include "scenario/Scenario.h"
#include "scenario/Step.h"
#include "scenario/Trace.h"
#include "softcard/Card.h"

namespace scenario {

/// A run under way, as its statements see it.
struct Run {
  softcard::Card& card;
  Performer& performer;
  std::uint64_t clock =
      0;  ///< in nanoseconds, the same in every run: each packet comes a microsecond after the one before
  std::map<unsigned, std::string> unused_labels{};  ///< by destination: that more were asked for than its way takes
  Trace last{};  ///< of the last request or packet, before the first one of the module's start
};

struct Options {
  bool accesses = false;  ///< calls are recorded with what the module looks at
  bool strict = false;    ///< a request that does not return 0 fails, unless an expectation asks for its result
  bool endless = false;   ///< a planned fault may wait for ever
  std::function<void(Run&)> afterwards{};  ///< is given the run when all has been done and told; may be empty
};

/// Runs a scenario on the card, which is emptied before, and tells the observer each step. What the module keeps for
/// the whole process stays: it starts in the first run only, and says of a client of an earlier run that it is
/// registered already.
/// At its end a planned fault that has not happened is a failure.
Tally RunScenario(const Scenario& scenario, softcard::Card& card, const Options& options, Observer& observer);

}  // namespace scenario

#endif
