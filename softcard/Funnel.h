#ifndef SOFTCARD_FUNNEL_H
#define SOFTCARD_FUNNEL_H

#include <optional>
#include <tuple>
#include <type_traits>
#include <utility>

#include "bcm/error.h"
#include "calls/MakeCall.h"
#include "softcard/Card.h"

/// Every platform function goes through here: consult the fault plan, do it on the tables, write the call log.
namespace softcard {

using calls::Args;
using calls::Named;

/// A call that the fault plan or the call log may have to do with.
template <typename Arguments, typename Work>
auto WatchedCall(Card& card, const calls::Function& function, const Arguments& arguments, const Work& work)
    -> decltype(work()) {
  using Result = decltype(work());
  const std::optional<int> planned = card.faults().Consult(function);
  const auto record = [&](calls::Value result, bool injected, std::string thrown) {
    if (!card.log().Records(function.purpose)) return;
    calls::Call call = calls::MakeCall(function, arguments);
    call.result = std::move(result);
    call.injected = injected;
    call.thrown = std::move(thrown);
    card.log().Add(std::move(call));
  };
  try {
    if constexpr (std::is_void_v<Result>) {
      work();
      record({}, false, {});
    } else {
      Result result{};
      if constexpr (std::is_integral_v<Result> || std::is_enum_v<Result>) {
        const bool refused = planned && (std::is_same_v<Result, bool> ? *planned == 0 : *planned < 0);
        if (!refused) result = work();
        if (planned) result = static_cast<Result>(*planned);
      } else {
        result = work();
      }
      record(calls::ResultValue(result), planned.has_value(), {});
      return result;
    }
  } catch (const std::exception& exception) {
    record({}, false, calls::Describe(exception));
    throw;
  }
}

/// `work` is what the function does on the card; kIndex its place among the descriptions.
template <int kIndex, typename Arguments, typename Work>
auto Call(const Arguments& arguments, const Work& work) -> decltype(work()) {
  constexpr const calls::Function& function = calls::kFunctions[kIndex];
  static_assert(std::tuple_size_v<Arguments> == function.argument_count());
  Card& card = Card::Get();
  const bool watched = !card.faults().empty() || card.log().Records(function.purpose);
  if (!watched || card.is_looking()) return work();
  return WatchedCall(card, function, arguments, work);
}

/// What `work` does on chip `unit`, of which the card has one.
template <typename Unit, typename Work>
int OnUnit(Unit unit, const Work& work) {
  return static_cast<int>(unit) == Card::Get().description().unit ? work() : static_cast<int>(BCM_E_UNIT);
}

inline Tables& TheTables() { return Card::Get().tables(); }

}  // namespace softcard

#endif
