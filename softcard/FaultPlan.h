#ifndef SOFTCARD_FAULT_PLAN_H
#define SOFTCARD_FAULT_PLAN_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace softcard {

/// Tells the card to fail. Functions are named as the call log names them ("IntfManager::CreateIntf",
/// "bcm_mpls_tunnel_initiator_set", "vlan_proto_ctrl_enable"). A call given a negative result, or false, does nothing
/// to the tables; one given 0, a positive result or true does its work and only its result is replaced. Calls are
/// counted from when the fault is planned; the first is number 1. A planned n-th or numbered call happens once.
class FaultPlan {
 public:
  /// The `nth` call of `function` from now on returns `result`.
  void FailNth(std::string function, unsigned long nth, int result);
  /// Every call of `function` from now on returns `result`.
  void FailEvery(std::string function, int result);
  /// The `number`-th event of kind kCall from now on, whatever function it is, returns `result`, if it has one.
  void FailCallNumber(unsigned long number, int result);
  void Clear() { faults_.clear(); }
  bool empty() const { return faults_.empty(); }

  /// Counts this call in and tells what it has to return; nothing: what the tables say. `numbered`: kind kCall.
  std::optional<int> Consult(std::string_view function, bool numbered);

 private:
  struct Fault {
    std::string function;     ///< empty: any
    unsigned long countdown;  ///< calls until it happens; 0: every call
    int result;
  };
  std::vector<Fault> faults_;
};

}  // namespace softcard

#endif
