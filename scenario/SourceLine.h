#ifndef SCENARIO_SOURCE_LINE_H
#define SCENARIO_SOURCE_LINE_H

#include <functional>
#include <string_view>
#include <vector>

#include "scenario/SyntaxError.h"
#include "scenario/Tokens.h"

namespace scenario {

/// A line that is not empty, with the lines between it and its `end`.
struct SourceLine {
  unsigned number;
  std::string_view text;
  std::string_view statement;  ///< without comment and the blanks around it
  std::vector<Token> words;
  std::vector<SourceLine> body;
};

using Report = std::function<void(const SourceLine&, const SyntaxError&)>;

/// The lines of a scenario as they are nested: those of loops are statements, those of expectations one word each.
/// Refers to `text`.
std::vector<SourceLine> ReadSource(std::string_view text, const Report& report);

}  // namespace scenario

#endif
