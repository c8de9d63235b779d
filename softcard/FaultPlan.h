#ifndef SOFTCARD_FAULT_PLAN_H
#define SOFTCARD_FAULT_PLAN_H

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "calls/Functions.h"

namespace softcard {

/// Tells the card to fail. Functions are named as the call log names them ("IntfManager::CreateIntf",
/// "bcm_mpls_tunnel_initiator_set", "vlan_proto_ctrl_enable"). A call given a negative result, or false, does nothing
/// to the tables; one given 0, a positive result or true does its work and only its result is replaced. Calls are
/// counted from when the fault is planned; the first is number 1. A planned n-th or numbered call happens once.
///
/// Planning throws std::invalid_argument for a name that no function has, a function without a result that could be
/// replaced, and a call 0. It gives the fault's number: 1 for the first one of this plan, and so on.
class FaultPlan {
 public:
  /// A fault that has not happened yet.
  struct Waiting {
    std::size_t fault;    ///< its number
    unsigned long calls;  ///< that would have counted, since it was planned
  };

  /// The `nth` call of `function` from now on returns `result`.
  std::size_t FailNth(std::string_view function, unsigned long nth, int result);
  /// Every call of `function` from now on returns `result`.
  std::size_t FailEvery(std::string_view function, int result);
  /// The `number`-th event that programs or asks the card from now on, whatever function it is, returns `result`, if it
  /// has one.
  std::size_t FailCallNumber(unsigned long number, int result);
  /// Forgets all faults, also those that wait.
  void Clear() { faults_.clear(); }
  bool empty() const { return faults_.empty(); }

  /// The faults that have not happened, in the order in which they were planned.
  std::vector<Waiting> NotHappened() const;

  /// Counts this call in and tells what it has to return; nothing: what the tables say.
  std::optional<int> Consult(const calls::Function& function);

 private:
  struct Planned {
    std::size_t number;
    const calls::Function* function;  ///< null: any that programs or asks the card
    unsigned long nth;                ///< 0: every call
    int result;
    unsigned long calls = 0;
    bool happened = false;
  };

  std::size_t Plan(const calls::Function* function, unsigned long nth, int result);

  std::vector<Planned> faults_;  ///< those that can still happen
  std::size_t planned_ = 0;
};

}  // namespace softcard

#endif
