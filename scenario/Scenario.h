#ifndef SCENARIO_SCENARIO_H
#define SCENARIO_SCENARIO_H

#include <deque>
#include <set>
#include <string>
#include <vector>

#include "scenario/SourceLine.h"
#include "softcard/CardDescription.h"

namespace scenario {

/// A scenario as its lines, which have been checked.
struct Scenario {
  std::string file;  ///< the name that messages show
  const Language* language = nullptr;
  std::deque<SourceText> texts;  ///< what the lines refer to
  Counters definitions;          ///< names that have the same value in all lines
  softcard::CardDescription card;
  bool starts_itself = false;      ///< a line says `start`
  std::set<Observer*> watchers{};  ///< are told each step of a run, ahead of its own observer
  std::vector<SourceLine> lines;
};

/// What the lines that have been read mean for those that follow.
struct Past {
  softcard::CardDescription card{};
  bool begun = false;               ///< too late to describe another card
  bool started = false;             ///< the module, by a request or ahead of all lines
  std::set<std::string> clients{};  ///< that lines register
  std::set<Observer*> watchers{};
  std::string last_request{};  ///< or packet: the statement's name
  bool has_result = false;     ///< that one
  bool is_packet = false;
};

/// What makes a scenario unusable.
struct Complaint {
  std::string file;
  unsigned line;
  unsigned column;  ///< in characters, from 1
  std::string message;
  std::string usage;
  std::string source;  ///< the line, of a long one what is around the place
  std::size_t offset;  ///< of the place in `source`

  /// "FILE:LINE:COLUMN: error: MESSAGE", the source line with a caret below the place, and the usage.
  std::string Text() const;
};

struct ParsedScenario {
  Scenario scenario;
  Past past;                          ///< with this scenario, for one that follows it
  std::vector<Complaint> complaints;  ///< not empty: the scenario is unusable
  std::size_t more_complaints = 0;    ///< that are not among them, as nobody reads so many
};

/// That one scenario may have, with the rounds of its loops.
constexpr std::size_t kMostStatements = 4'000'000;

/// Reads a whole scenario and checks every line in every round of its loops. The language is to outlive the scenario.
ParsedScenario ParseScenario(const Language& language, const std::string& file, std::string text,
                             const Counters& definitions = {});

/// The same for a text that goes on where another scenario has ended.
ParsedScenario ParseScenario(const Language& language, SourceText text, const Counters& definitions, Past past,
                             std::size_t most_statements);

}  // namespace scenario

#endif
