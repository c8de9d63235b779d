#ifndef CALLS_MAKE_CALL_H
#define CALLS_MAKE_CALL_H

#include <tuple>
#include <type_traits>

#include "calls/Event.h"

namespace calls {

/// A call's arguments, made into values of their own only when somebody wants to see the call.
template <typename... Values>
std::tuple<Values...> Args(Values... values) {
  return {values...};
}

/// The call without its result. `arguments` are those that the function's description names.
template <typename Arguments>
Call MakeCall(const Function& function, const Arguments& arguments) {
  Call call{&function, {}};
  call.arguments.reserve(std::tuple_size_v<Arguments>);
  std::apply([&](const auto&... values) { (call.arguments.push_back(ToValue(values)), ...); }, arguments);
  return call;
}

/// Nothing for a result without a text: singletons, managers, objects.
template <typename Result>
Value ResultValue(const Result& result) {
  if constexpr (std::is_pointer_v<Result>) {
    return {};
  } else {
    return ToValue(result);
  }
}

}  // namespace calls

#endif
