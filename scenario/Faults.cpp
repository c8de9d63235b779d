#include <limits>

#include "scenario/Run.h"
#include "scenario/Statements.h"
#include "scenario/SyntaxError.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

using When = PlannedFault::When;
constexpr unsigned kEvery = 0;

PlannedFault ReadFault(const Fields& fields) {
  const auto number = [](const Token& word, const Names& names = {}) {
    constexpr long long kMost = std::numeric_limits<unsigned>::max();
    return static_cast<unsigned long>(ToNumber(word, "number of a call", 1, kMost, names));
  };
  const Token* nth = fields.Find("nth");
  const Token* call = fields.Find("call");
  if (fields.Has(0) == (call != nullptr)) {
    throw SyntaxError{fields.name().offset, "\"fail\" needs either FUNCTION or call=N", fields.form().usage()};
  }
  PlannedFault fault;
  const Token& result = *fields.Find("result");
  if (call != nullptr) {
    if (nth != nullptr) throw SyntaxError{nth->offset, "nth= counts the calls of a function; with call= leave it out"};
    fault.when = When::kNumbered;
    fault.number = number(*call);
    fault.result = ToResult(result, nullptr);
    return fault;
  }
  const calls::Function* const function = ToFunctionWithResult(fields.words()[0]);
  fault.function = function->name;
  fault.result = ToResult(result, function);
  if (nth != nullptr) fault.number = number(*nth, {{"every", kEvery}});
  if (fault.number == kEvery) fault.when = When::kEvery;
  return fault;
}

std::size_t Plan(const PlannedFault& fault, softcard::FaultPlan& faults) {
  switch (fault.when) {
    case When::kNth: return faults.FailNth(fault.function, fault.number, fault.result);
    case When::kEvery: return faults.FailEvery(fault.function, fault.result);
    case When::kNumbered: break;
  }
  return faults.FailCallNumber(fault.number, fault.result);
}

}  // namespace

void AddFaults(Language& language) {
  language.Add("fail", "[FUNCTION] [nth=N|every] [call=N] result=RESULT",
               "Makes a call of a platform function from here on return this; the next one without nth= or call=",
               Kind::kPlan, [](const Fields& fields, const Surroundings&) {
                 return [fault = ReadFault(fields)](Run& run) {
                   PlannedFault planned = fault;
                   planned.id = Plan(fault, run.card.faults());
                   return planned;
                 };
               });
  language.Add("clear-faults", "", "Takes back every planned fault", Kind::kPlan,
               [](const Fields&, const Surroundings&) {
                 return [](Run& run) {
                   run.card.faults().Clear();
                   return ClearedFaults{};
                 };
               });
}

}  // namespace scenario
