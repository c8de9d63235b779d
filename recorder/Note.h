#ifndef RECORDER_NOTE_H
#define RECORDER_NOTE_H

#include <cstring>

#include "calls/MakeCall.h"
#include "recorder/Next.h"
#include "recorder/Recorder.h"

/// Hands every call of a platform function on to the platform, and notes it while the module makes a request.
namespace recorder {

/// A call that is noted. Apart from the others, which it would slow down.
template <int kIndex, typename Result, typename Arguments, typename Output, typename... Values>
__attribute__((noinline)) Result Noted(Arguments arguments, Output output, Values... values) {
  static_assert(std::tuple_size_v<Arguments> == calls::kFunctions[kIndex].argument_count());
  const auto next = reinterpret_cast<Result (*)(Values...)>(Next(kIndex));
  // Notes are made inside Recorder::Note, which nothing leaves: not even for lack of memory.
  const auto note = [&](bool succeeded, bool threw, const auto&... result) {
    Recorder::Get().Note([&] {
      calls::Call call = calls::MakeCall(calls::kFunctions[kIndex], arguments);
      ((call.result = calls::ResultValue(result)), ...);
      if (succeeded) call.output = output();
      if (threw) call.thrown = DescribeThrown();
      return call;
    });
  };
  const Within platform(Place::kPlatform);
  try {
    if constexpr (std::is_void_v<Result>) {
      next(values...);
      note(true, false);
    } else {
      Result result = next(values...);
      bool succeeded = true;
      if constexpr (std::is_same_v<Result, int>) succeeded = result >= 0;
      note(succeeded, false, result);
      return result;
    }
  } catch (...) {
    note(false, true);
    throw;
  }
}

/// `arguments` are those that the function's description names; `output` makes a value of what came back through a
/// pointer, asked after a call that succeeded; `values` are what the function is called with, the object first.
template <int kIndex, typename Result, typename Arguments, typename Output, typename... Values>
__attribute__((always_inline)) inline Result Through(Arguments arguments, Output output, Values... values) {
  if (Within::Here() == Place::kRequest) return Noted<kIndex, Result>(arguments, output, values...);
  return reinterpret_cast<Result (*)(Values...)>(Next(kIndex))(values...);
}

/// What a call wrote through a pointer.
inline constexpr auto kNothingWritten = [] { return calls::Value(); };
inline auto Written(IntfObject** /*object*/) { return kNothingWritten; }
template <typename Number>
auto Written(Number* number) {
  return [number] { return calls::ToValue(static_cast<unsigned>(*number)); };
}
inline auto Written(bcm_mpls_egress_label_t* label) {
  return [label] { return calls::ToValue(calls::LabelArray{label, 1}); };
}
inline auto Written(char* name, std::size_t size) {
  return [name, size] { return calls::Value(std::string(name, strnlen(name, size))); };
}

/// A function that is called with what its description names, in that order; a member's object comes first.
template <int kIndex, typename Result, typename... Values>
__attribute__((always_inline)) inline Result Plain(Values... values) {
  return Through<kIndex, Result>(calls::Args(values...), kNothingWritten, values...);
}
template <int kIndex, typename Result, typename Object, typename... Values>
__attribute__((always_inline)) inline Result Member(Object* object, Values... values) {
  return Through<kIndex, Result>(calls::Args(values...), kNothingWritten, object, values...);
}

}  // namespace recorder

#endif
