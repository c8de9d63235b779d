#ifndef RECORDER_NOTE_H
#define RECORDER_NOTE_H

#include <atomic>
#include <cstring>

#include "calls/MakeCall.h"
#include "recorder/Next.h"
#include "recorder/Recorder.h"
#include "recorder/Shape.h"

/// Hands every call of a platform function on to the platform, and notes it while the module makes a request.
namespace recorder {

/// What the module's entry points have found: that this process will never have a recording.
inline std::atomic<bool> nothing_is_recorded{false};

/// What a call wrote through a pointer.
inline auto Written() {
  return [] { return calls::Value(); };
}
inline auto Written(IntfObject** /*object*/) { return Written(); }
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

/// A call that is noted.
template <int kIndex, typename Result, typename Arguments, typename Output, typename... Values>
Result Noted(Arguments arguments, Output output, Values... values) {
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

/// The same of the values that a function is called with. Apart from the others, which it would slow down.
template <int kIndex, typename Result, typename... Values>
__attribute__((noinline)) Result NotedPlain(Values... values) {
  const auto output =
      std::apply([](auto... outputs) { return Written(outputs...); }, Shape<kIndex>::Outputs(values...));
  return Noted<kIndex, Result>(Shape<kIndex>::Arguments(values...), output, values...);
}
template <int kIndex, typename Result, typename Object, typename... Values>
__attribute__((noinline)) Result NotedMember(Object* object, Values... values) {
  const auto output =
      std::apply([](auto... outputs) { return Written(outputs...); }, Shape<kIndex>::Outputs(values...));
  return Noted<kIndex, Result>(Shape<kIndex>::Arguments(values...), output, object, values...);
}

/// What a function of the platform leads to: to Decide(), and for good to the platform's own function as soon as it is
/// known that nothing will be recorded. Then being in front costs a jump.
template <int kIndex, auto kNoted>
class Way;
template <int kIndex, typename Result, typename... Values, Result (*kNoted)(Values...)>
class Way<kIndex, kNoted> {
 public:
  __attribute__((always_inline)) static Result Go(Values... values) {
    return to_.load(std::memory_order_relaxed)(values...);
  }

  static Result Decide(Values... values) {
    if (Within::Here() == Place::kRequest) return kNoted(values...);
    const auto next = reinterpret_cast<Result (*)(Values...)>(Next(kIndex));
    if (nothing_is_recorded.load(std::memory_order_relaxed)) to_.store(next, std::memory_order_relaxed);
    return next(values...);
  }

 private:
  static inline std::atomic<Result (*)(Values...)> to_{Decide};
};

/// A function that is called with what its description names, in that order, or as its Shape says; a member's object
/// comes first.
template <int kIndex, typename Result, typename... Values>
__attribute__((always_inline)) inline Result Plain(Values... values) {
  return Way<kIndex, NotedPlain<kIndex, Result, Values...>>::Go(values...);
}
template <int kIndex, typename Result, typename Object, typename... Values>
__attribute__((always_inline)) inline Result Member(Object* object, Values... values) {
  return Way<kIndex, NotedMember<kIndex, Result, Object, Values...>>::Go(object, values...);
}

}  // namespace recorder

#endif
