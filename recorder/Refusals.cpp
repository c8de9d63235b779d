#include "recorder/Refusals.h"

#include <map>
#include <string>

namespace recorder {
namespace {

using calls::Result;

/// The result of a call that did not go well.
std::optional<int> RefusedResult(const calls::Call& call) {
  const auto* const result = std::get_if<std::int64_t>(&call.result);
  if (!result) return std::nullopt;
  const auto number = static_cast<int>(*result);
  switch (call.function->result) {
    case Result::kFound: return number == 0 ? std::optional(number) : std::nullopt;
    case Result::kStatus: return number != 0 ? std::optional(number) : std::nullopt;
    case Result::kId:
    case Result::kNumber:
    case Result::kPredicate: return number < 0 ? std::optional(number) : std::nullopt;
    default: return std::nullopt;
  }
}

void Collect(const Step& step, std::map<const calls::Function*, unsigned long>* count, std::vector<Refusal>* refusals) {
  for (const Item& item : step.items) {
    if (const auto* notification = std::get_if<Notification>(&item.what)) {
      for (const auto& called : notification->steps) {
        if (const auto* inner = std::get_if<Step>(&called)) Collect(*inner, count, refusals);
      }
      continue;
    }
    const auto* const call = std::get_if<calls::Call>(&std::get<calls::Event>(item.what));
    if (!call) continue;
    if (!call->thrown.empty()) {
      throw BadRecording("line " + std::to_string(item.line) +
                         ": a platform call that threw, which no software card can be told to do; replay the recording "
                         "as it is");
    }
    const unsigned long nth = ++(*count)[call->function];
    if (const auto result = RefusedResult(*call)) refusals->push_back({item.line, call->function, nth, *result});
  }
}

}  // namespace

std::vector<Refusal> Refusals(const Step& step) {
  std::map<const calls::Function*, unsigned long> count;
  std::vector<Refusal> refusals;
  Collect(step, &count, &refusals);
  return refusals;
}

}  // namespace recorder
