#ifndef SCENARIO_RUN_H
#define SCENARIO_RUN_H

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
  Trace last{};  ///< of the last request or packet, before the first one of the module's start
};

/// Whether the calls of a run are recorded with what the module looks at.
enum class Accesses { kLeftOut, kRecorded };

/// Runs a scenario on the card, which is emptied before, and tells the observer each step. What the module keeps for
/// the whole process stays: it starts in the first run only, and says of a client of an earlier run that it is
/// registered already.
Tally RunScenario(const Scenario& scenario, softcard::Card& card, Accesses accesses, Observer& observer);

}  // namespace scenario

#endif
