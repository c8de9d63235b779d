#include "softcard/FaultPlan.h"

#include <stdexcept>
#include <utility>

namespace softcard {
namespace {

unsigned long CheckedCount(unsigned long count) {
  if (count == 0) throw std::invalid_argument("fault plan: there is no call 0; the first call is number 1");
  return count;
}

}  // namespace

void FaultPlan::FailNth(std::string function, unsigned long nth, int result) {
  faults_.push_back({std::move(function), CheckedCount(nth), result});
}

void FaultPlan::FailEvery(std::string function, int result) { faults_.push_back({std::move(function), 0, result}); }

void FaultPlan::FailCallNumber(unsigned long number, int result) {
  faults_.push_back({{}, CheckedCount(number), result});
}

std::optional<int> FaultPlan::Consult(std::string_view function, bool numbered) {
  std::optional<int> result;
  for (auto fault = faults_.begin(); fault != faults_.end();) {
    const bool counts = fault->function.empty() ? numbered : fault->function == function;
    const bool once = fault->countdown > 0;
    const bool happens = counts && (!once || --fault->countdown == 0);
    if (happens && !result) result = fault->result;  // of two faults for one call, the one planned first
    fault = happens && once ? faults_.erase(fault) : fault + 1;
  }
  return result;
}

}  // namespace softcard
