#ifndef SCENARIO_SCENARIO_PARSER_H
#define SCENARIO_SCENARIO_PARSER_H

#include <string>
#include <string_view>
#include <vector>

#include "scenario/Scenario.h"

namespace scenario {

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

/// Reads a whole scenario; loops are unrolled. `file` is the name that messages show.
ParsedScenario ParseScenario(const std::string& file, std::string_view text);

}  // namespace scenario

#endif
