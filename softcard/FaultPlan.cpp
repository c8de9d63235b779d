#include "softcard/FaultPlan.h"

#include <stdexcept>
#include <string>

namespace softcard {
namespace {

const calls::Function* Refusable(std::string_view name) {
  const calls::Function* const function = calls::FindFunction(name);
  if (!function) throw std::invalid_argument("fault plan: no platform function is called \"" + std::string(name) + '"');
  if (!function->can_be_refused()) {
    throw std::invalid_argument("fault plan: " + std::string(name) + " has no result that could be replaced");
  }
  return function;
}

unsigned long CheckedCount(unsigned long count) {
  if (count == 0) throw std::invalid_argument("fault plan: there is no call 0; the first call is number 1");
  return count;
}

}  // namespace

std::size_t FaultPlan::FailNth(std::string_view function, unsigned long nth, int result) {
  return Plan(Refusable(function), CheckedCount(nth), result);
}

std::size_t FaultPlan::FailEvery(std::string_view function, int result) { return Plan(Refusable(function), 0, result); }

std::size_t FaultPlan::FailCallNumber(unsigned long number, int result) {
  return Plan(nullptr, CheckedCount(number), result);
}

std::size_t FaultPlan::Plan(const calls::Function* function, unsigned long nth, int result) {
  faults_.push_back({++planned_, function, nth, result});
  return planned_;
}

std::vector<FaultPlan::Waiting> FaultPlan::NotHappened() const {
  std::vector<Waiting> waiting;
  for (const Planned& fault : faults_) {
    if (!fault.happened) waiting.push_back({fault.number, fault.calls});
  }
  return waiting;
}

std::optional<int> FaultPlan::Consult(const calls::Function& function) {
  std::optional<int> result;
  for (auto fault = faults_.begin(); fault != faults_.end();) {
    const bool counts = fault->function ? fault->function->name == std::string_view(function.name)
                                        : function.purpose == calls::Purpose::kCall;
    const bool once = fault->nth > 0;
    // A numbered call without a result that could be replaced is passed over: its fault never happens.
    const bool happens = counts && (++fault->calls == fault->nth || !once) && function.can_be_refused();
    if (happens && !result) result = fault->result;  // of two faults for one call, the one planned first
    fault->happened = fault->happened || happens;
    fault = happens && once ? faults_.erase(fault) : fault + 1;
  }
  return result;
}

}  // namespace softcard
