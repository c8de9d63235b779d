#include <limits>

#include "scenario/Run.h"
#include "scenario/Statements.h"
#include "scenario/SyntaxError.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

using When = PlannedFault::When;

PlannedFault ReadFault(const Fields& fields) {
  const auto number = [](const Token& word) {
    return static_cast<unsigned long>(ToNumber(word, "number of a call", 1, std::numeric_limits<unsigned>::max()));
  };
  const Token* nth = fields.Find("nth");
  const Token* call = fields.Find("call");
  if (fields.Has(0) == (call != nullptr)) {
    throw SyntaxError{fields.name().offset, "\"fail\" needs either FUNCTION or call=N", fields.form().usage()};
  }
  PlannedFault fault;
  fault.result = ToStatus(*fields.Find("result"), "status");
  if (call != nullptr) {
    if (nth != nullptr) throw SyntaxError{nth->offset, "nth= counts the calls of a function; with call= leave it out"};
    fault.when = When::kNumbered;
    fault.number = number(*call);
    return fault;
  }
  fault.function = ToFunctionWithResult(fields.words()[0]);
  if (nth != nullptr && nth->text == "every") {
    fault.when = When::kEvery;
  } else if (nth != nullptr) {
    fault.number = number(*nth);
  }
  return fault;
}

void Plan(const PlannedFault& fault, softcard::FaultPlan& faults) {
  switch (fault.when) {
    case When::kNth: faults.FailNth(fault.function, fault.number, fault.result); break;
    case When::kEvery: faults.FailEvery(fault.function, fault.result); break;
    case When::kNumbered: faults.FailCallNumber(fault.number, fault.result); break;
  }
}

}  // namespace

void AddFaults(Language& language) {
  language.Add("fail", "[FUNCTION] [nth=N|every] [call=N] result=STATUS",
               "Makes a call of a platform function from here on return this; the next one without nth= or call=",
               Kind::kPlan, [](const Fields& fields, const Surroundings&) {
                 return [fault = ReadFault(fields)](Run& run) {
                   Plan(fault, run.card.faults());
                   return fault;
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
