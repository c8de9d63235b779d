#ifndef RECORDER_ANSWER_H
#define RECORDER_ANSWER_H

#include <algorithm>
#include <cstddef>
#include <string>
#include <type_traits>

#include "calls/MakeCall.h"
#include "recorder/Player.h"
#include "recorder/Shape.h"

/// Answers every call of a platform function as recorded; with nothing where nothing was recorded.
namespace recorder {

/// What a pointer to a manager or another object of the platform points to.
template <typename Object>
Object* The() {
  static Object* const object = new Object;
  return object;
}

template <typename Result>
Result As(const calls::Value& value) {
  if constexpr (std::is_pointer_v<Result>) {
    return The<std::remove_pointer_t<Result>>();
  } else if constexpr (std::is_integral_v<Result> || std::is_enum_v<Result>) {
    const auto* const number = std::get_if<std::int64_t>(&value);
    return static_cast<Result>(number ? *number : 0);
  } else {
    const auto* const held = std::get_if<Result>(&value);
    return held ? *held : Result{};
  }
}

/// Writes through a pointer what a recorded call brought back.
inline auto Written() {
  return [](const calls::Call&) {};
}
inline auto Written(IntfObject** object) {
  return [object](const calls::Call& call) {
    if (As<bool>(call.result)) *object = The<IntfObject>();
  };
}
template <typename Number>
auto Written(Number* number) {
  return [number](const calls::Call& call) {
    if (std::holds_alternative<std::int64_t>(call.output)) *number = As<Number>(call.output);
  };
}
inline auto Written(bcm_mpls_egress_label_t* label) {
  return [label](const calls::Call& call) {
    const auto* const labels = std::get_if<calls::Labels>(&call.output);
    if (labels && !labels->empty()) *label = labels->front();
  };
}
inline auto Written(char* name, std::size_t size) {
  return [name, size](const calls::Call& call) {
    const auto* const text = std::get_if<std::string>(&call.output);
    if (!text) return;
    const std::size_t length = text->copy(name, size);
    if (length < size) name[length] = '\0';
  };
}

template <int kIndex, typename Result, typename... Values>
Result Plain(Values... values) {
  constexpr const calls::Function& function = calls::kFunctions[kIndex];
  const auto arguments = Shape<kIndex>::Arguments(values...);
  static_assert(std::tuple_size_v<decltype(Shape<kIndex>::Arguments(values...))> == function.argument_count());
  const calls::Call* const recorded = Player::Get().Answer(calls::MakeCall(function, arguments));
  const auto write = std::apply([](auto... outputs) { return Written(outputs...); }, Shape<kIndex>::Outputs(values...));
  if (recorded) write(*recorded);
  if constexpr (std::is_void_v<Result>) {
    return;
  } else {
    return As<Result>(recorded ? recorded->result : calls::Value());
  }
}
template <int kIndex, typename Result, typename Object, typename... Values>
Result Member(Object* /*object*/, Values... values) {
  return Plain<kIndex, Result>(values...);
}

}  // namespace recorder

#endif
