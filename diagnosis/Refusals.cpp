#include "diagnosis/Refusals.h"

namespace diagnosis {

std::vector<calls::Call> CallsOf(const Attempt& attempt) {
  std::vector<calls::Call> calls;
  for (const scenario::TraceLine& line : attempt.trace.lines) {
    if (line.kind() == scenario::TraceLine::Kind::kCall) {
      calls.push_back(std::get<calls::Call>(std::get<calls::Event>(line.what)));
    }
  }
  return calls;
}

std::string RefusalBy(const calls::Function& function) {
  return function.result == calls::Result::kFound ? "false" : "BCM_E_FAIL";
}

Refusals RefuseEachCall(const scenario::Language& language, softcard::Card& card, const Situation& situation) {
  Refusals refusals{Try(language, card, situation), {}};
  unsigned long number = 0;
  for (const calls::Call& call : CallsOf(refusals.unhindered)) {
    ++number;
    if (!call.function->can_be_refused()) continue;
    const std::string status = RefusalBy(*call.function);
    Situation hindered = situation;
    hindered.before.push_back("fail call=" + std::to_string(number) + " result=" + status);
    refusals.refused.push_back({number, call, status, Try(language, card, hindered)});
  }
  return refusals;
}

}  // namespace diagnosis
