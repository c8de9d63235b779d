#ifndef DIAGNOSIS_SWEEP_H
#define DIAGNOSIS_SWEEP_H

#include <functional>
#include <string>
#include <vector>

#include "diagnosis/Audit.h"
#include "diagnosis/Branches.h"
#include "scenario/Run.h"
#include "scenario/Scenario.h"

namespace diagnosis {

/// A platform call that was refused.
struct RefusedCall {
  unsigned long number = 0;  ///< of the call in its request, from 1
  const calls::Function* function = nullptr;
  int result = 0;  ///< what it returned instead

  /// "2. IntfManager::CreateIntf = -11 (Operation failed)"
  std::string Text() const;
};

/// What became of a request.
struct SweepOutcome {
  std::vector<RefusedCall> refused;  ///< empty: as it is when nothing is refused
  std::string result;                ///< "0", "threw std::out_of_range: HAL ID not found"; empty when it crashed
  std::vector<calls::LogLine> log;
  std::vector<Finding> findings;  ///< of the audit afterwards; of a refusal those that are not there without it
  std::string again;    ///< what the same request returns when it is made again; empty when nothing asks for it
  std::string destroy;  ///< what destroying the destination returns; empty when there is none
  std::string crash;    ///< "crashed: Segmentation fault"; empty when it did not
};

/// A request of a scenario, once as it is and once for each refusal.
struct SweptRequest {
  std::string file;
  unsigned line = 0;
  scenario::Counters rounds;
  std::string text;
  SweepOutcome unhindered;
  std::vector<SweepOutcome> refusals;

  // Of one of its refusals.
  bool FailsAgain(const SweepOutcome& refusal) const;
  bool CannotBeDestroyed(const SweepOutcome& refusal) const;
  /// Whether it leaves nothing that anybody had to clean up.
  bool IsHarmless(const SweepOutcome& refusal) const;
};

struct SweepOptions {
  bool pairs = false;      ///< also two calls of a request, the second one of those that follow the first refusal
  bool all_codes = false;  ///< every class of result that the module may tell apart, not only the plain failure
  std::function<void(scenario::Run&)> afterwards{};  ///< is given the unhindered run at its end; may be empty
};

/// What a call of this function may return in place of a success: the plain failure, or one result of each class.
std::vector<int> ResultsOfRefusal(const calls::Function& function, bool all_codes);

/// Runs the scenario, and each of its requests once more for every platform call that it makes, with that call refused,
/// in a branch of its own. Tells of each request when all is known about it. `ledger` is a watcher of the
/// scenario. What the scenario expects is not looked at.
void Sweep(const scenario::Scenario& scenario, softcard::Card& card, const Ledger& ledger, const SweepOptions& options,
           Branches& branches, const std::function<void(const SweptRequest&)>& tell);

}  // namespace diagnosis

#endif
