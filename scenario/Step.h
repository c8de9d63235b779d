#ifndef SCENARIO_STEP_H
#define SCENARIO_STEP_H

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "scenario/Substitution.h"
#include "scenario/Trace.h"
#include "softcard/tables/Row.h"

namespace scenario {

/// What a statement is.
enum class Kind {
  kStart,    ///< starts the module
  kRequest,  ///< has a result
  kClient,   ///< registers an update client
  kPacket,
  kPlan,  ///< of faults
  kShow,
  kSay,
  kExpectation,
  kCard,
  kLoop,
  kInclude,
  kEnd,
};

struct ShownTable {
  std::string name;
  std::vector<softcard::Row> rows;
};

struct Shown {
  std::vector<ShownTable> tables;
};

/// What a destination consists of.
struct ShownChain {
  std::vector<std::string> lines;
};

struct PlannedFault {
  enum class When {
    kNth,      ///< the n-th call of the function
    kEvery,    ///< each call of the function
    kNumbered  ///< the n-th call, whatever function it is
  };

  When when = When::kNth;
  std::string function;
  unsigned long number = 1;
  int result = 0;
  std::size_t id = 0;  ///< its number in the card's plan
};

struct ClearedFaults {};

struct Said {
  std::string text;
};

/// Why an expectation does not hold, a line each: "expected: ...", "found: ...".
using Failure = std::vector<std::string>;

/// An expectation; beside those that are written, that a planned fault happens and, in a strict run, that a request
/// returns 0. The step of such a one is the statement that it is about.
struct Checked {
  std::optional<Failure> failure;  ///< nothing: it holds
  unsigned request_line = 0;       ///< of the last request or packet when it fails; 0: there was none
  std::string request{};           ///< as written, loop counters replaced
};

/// What a statement has to tell when it is done.
using Content = std::variant<Trace, Shown, ShownChain, PlannedFault, ClearedFaults, Said, Checked>;

/// A statement that has been done.
struct Step {
  const std::string& file;
  unsigned line;           ///< 0: the module's start before the first line
  const Counters& rounds;  ///< of the loops around the line
  std::string_view source;
  Kind kind;
  const Content& content;

  /// As written, without comment, loop counters replaced.
  std::string Text() const;
};

/// How many there were.
struct Tally {
  unsigned long requests = 0;
  unsigned long expectations = 0;
  unsigned long failed = 0;  ///< expectations, faults that never happened and results that nothing expects
};

/// Is told what happens in a run.
class Observer {
 public:
  virtual ~Observer() = default;
  virtual void Took(const Step& step) = 0;
  /// The run of this file is over.
  virtual void Ended(const std::string& file, const Tally& tally) = 0;
};

}  // namespace scenario

#endif
