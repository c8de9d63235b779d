#ifndef SCENARIO_WAITING_FAULTS_H
#define SCENARIO_WAITING_FAULTS_H

#include <cstddef>
#include <map>
#include <utility>
#include <vector>

#include "scenario/SourceLine.h"
#include "scenario/Step.h"
#include "softcard/FaultPlan.h"

namespace scenario {

/// Where a statement stands.
struct Place {
  const SourceLine* line = nullptr;
  Counters rounds{};
};

/// The faults that a run has planned, until they happen.
class WaitingFaults {
 public:
  void Add(const PlannedFault& fault, const Place& place, const softcard::FaultPlan& plan);

  /// Those that have not happened, and what to say of them.
  std::vector<std::pair<Place, Failure>> NotHappened(const softcard::FaultPlan& plan) const;

 private:
  struct Planned {
    PlannedFault fault;
    Place place;
  };

  std::map<std::size_t, Planned> faults_;  ///< by their numbers in the plan
  std::size_t most_ = 1000;                ///< before those that have happened are forgotten
};

}  // namespace scenario

#endif
