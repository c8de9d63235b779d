#include "scenario/WaitingFaults.h"

namespace scenario {
namespace {

std::string Times(unsigned long count) { return count == 1 ? "once" : std::to_string(count) + " times"; }

Failure Why(const PlannedFault& fault, unsigned long calls) {
  if (fault.when != PlannedFault::When::kNumbered) {
    return {"this fault never happened: " + fault.function + " was called " + Times(calls) + " since"};
  }
  return {calls < fault.number ? "this fault never happened: platform functions were called " + Times(calls) + " since"
                               : "this fault never happened: call " + std::to_string(fault.number) +
                                     " was of a function without a result that a fault could replace"};
}

}  // namespace

void WaitingFaults::Add(const PlannedFault& fault, const Place& place, const softcard::FaultPlan& plan) {
  if (faults_.size() >= most_) {
    std::map<std::size_t, Planned> waiting;
    for (const auto& [number, calls] : plan.NotHappened()) {
      if (const auto kept = faults_.find(number); kept != faults_.end()) waiting.insert(*kept);
    }
    faults_ = std::move(waiting);
    most_ = 1000 + 2 * faults_.size();
  }
  faults_[fault.id] = {fault, place};
}

std::vector<std::pair<Place, Failure>> WaitingFaults::NotHappened(const softcard::FaultPlan& plan) const {
  std::vector<std::pair<Place, Failure>> failures;
  for (const auto& [number, calls] : plan.NotHappened()) {
    const Planned& planned = faults_.at(number);
    failures.emplace_back(planned.place, Why(planned.fault, calls));
  }
  return failures;
}

}  // namespace scenario
