#ifndef DIAGNOSIS_REFUSALS_H
#define DIAGNOSIS_REFUSALS_H

#include <string>
#include <vector>

#include "diagnosis/Attempt.h"

namespace diagnosis {

/// A request of which one call was refused.
struct Refusal {
  unsigned long number;  ///< of the call in its request, from 1
  calls::Call call;      ///< as it is when nothing is refused
  std::string status;    ///< what it returned instead, in the words of the language
  Attempt attempt;
};

/// What becomes of a request when each of its platform calls is refused in turn.
struct Refusals {
  Attempt unhindered;
  std::vector<Refusal> refused;  ///< a call without a result that could be another is left out
};

/// The platform calls of an attempt, in order.
std::vector<calls::Call> CallsOf(const Attempt& attempt);

/// What a call of this function that fails for no particular reason returns, in the words of the language: "not found"
/// for a lookup, else BCM_E_FAIL.
std::string RefusalBy(const calls::Function& function);

/// Tries the situation as it is, and then once for each of its request's calls with that call refused.
Refusals RefuseEachCall(const scenario::Language& language, softcard::Card& card, const Situation& situation);

}  // namespace diagnosis

#endif
