#ifndef SOFTCARD_FUNNEL_H
#define SOFTCARD_FUNNEL_H

#include <optional>
#include <string>
#include <tuple>
#include <type_traits>

#include "bcm/error.h"
#include "calls/Text.h"
#include "softcard/Card.h"

/// Every platform function goes through here: consult the fault plan, do it on the tables, write the call log.
namespace softcard {

/// While one lives, platform functions neither consult the fault plan nor write the call log: the card itself looks.
class Unseen {
 public:
  Unseen() : outer_(active_) { active_ = true; }
  ~Unseen() { active_ = outer_; }
  Unseen(const Unseen&) = delete;
  Unseen& operator=(const Unseen&) = delete;

  static bool active() { return active_; }

 private:
  static bool active_;
  const bool outer_;
};

/// The names and values of a call's arguments, made into text only when the call is recorded.
template <typename... Values>
auto Args(Values... names_and_values) {
  return std::make_tuple(names_and_values...);
}

template <typename Arguments>
std::string CallText(const char* function, const Arguments& arguments) {
  return std::string(function) + '(' +
         std::apply([](const auto&... fields) { return Fields(", ", fields...); }, arguments) + ')';
}

/// " = 1"; nothing for a result without a text: singletons, managers, objects.
template <typename Result>
std::string ResultText(const Result& result) {
  if constexpr (std::is_same_v<Result, int>)
    return " = " + StatusText(result);
  else if constexpr (std::is_pointer_v<Result>)
    return {};
  else
    return " = " + Text(result);
}

template <EventKind kind, typename Arguments, typename Work>
auto Pass(const char* function, const Arguments& arguments, const Work& work) -> decltype(work()) {
  using Result = decltype(work());
  if (Unseen::active()) return work();

  Card& card = Card::Get();
  std::optional<int> planned;
  if (!card.faults().empty()) planned = card.faults().Consult(function, kind == EventKind::kCall);

  if constexpr (std::is_void_v<Result>) {
    work();
    if (card.log().Records(kind)) card.log().Add(kind, CallText(function, arguments));
  } else {
    Result result{};
    if constexpr (std::is_integral_v<Result> || std::is_enum_v<Result>) {
      const bool refused = planned && (std::is_same_v<Result, bool> ? *planned == 0 : *planned < 0);
      if (!refused) result = work();
      if (planned) result = static_cast<Result>(*planned);
    } else {
      result = work();
    }
    if (card.log().Records(kind)) card.log().Add(kind, CallText(function, arguments) + ResultText(result));
    return result;
  }
}

/// A call that programs or asks the card.
template <typename Arguments, typename Work>
auto Call(const char* function, const Arguments& arguments, const Work& work) -> decltype(work()) {
  return Pass<EventKind::kCall>(function, arguments, work);
}

/// A look at what is there already.
template <typename Arguments, typename Work>
auto Access(const char* function, const Arguments& arguments, const Work& work) -> decltype(work()) {
  return Pass<EventKind::kAccess>(function, arguments, work);
}

/// What `work` does on chip `unit`, of which the card has one.
template <typename Unit, typename Work>
int OnUnit(Unit unit, const Work& work) {
  return static_cast<int>(unit) == Card::Get().description().unit ? work() : static_cast<int>(BCM_E_UNIT);
}

inline Tables& TheTables() { return Card::Get().tables(); }

}  // namespace softcard

#endif
