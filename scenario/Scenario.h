#ifndef SCENARIO_SCENARIO_H
#define SCENARIO_SCENARIO_H

#include <memory>
#include <string>
#include <vector>

#include "scenario/SourceLine.h"
#include "softcard/CardDescription.h"

namespace scenario {

/// A scenario as its lines, which have been checked.
struct Scenario {
  std::string file;  ///< the name that messages show
  const Language* language = nullptr;
  std::unique_ptr<SourceText> text;  ///< what the lines refer to
  softcard::CardDescription card;
  bool starts_itself = false;  ///< a line says `start`
  std::vector<SourceLine> lines;
};

/// What makes a scenario unusable.
struct Complaint {
  unsigned line;
  unsigned column;  ///< in characters, from 1
  std::string message;
  std::string usage;
  std::string source;  ///< the line

  /// "FILE:LINE:COLUMN: error: MESSAGE", the source line with a caret below the place, and the usage.
  std::string Text(const std::string& file) const;
};

struct ParsedScenario {
  Scenario scenario;
  std::vector<Complaint> complaints;  ///< not empty: the scenario is unusable
};

/// Reads a whole scenario and checks every line in every round of its loops. The language is to outlive the scenario.
ParsedScenario ParseScenario(const Language& language, const std::string& file, std::string text);

}  // namespace scenario

#endif
