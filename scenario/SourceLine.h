#ifndef SCENARIO_SOURCE_LINE_H
#define SCENARIO_SOURCE_LINE_H

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scenario/Language.h"
#include "scenario/SyntaxError.h"
#include "scenario/Tokens.h"

namespace scenario {

/// A line that is not empty, with the lines between it and its `end`.
struct SourceLine {
  unsigned number = 0;
  std::string_view text{};
  std::string_view statement{};  ///< without comment and the blanks around it
  std::vector<Token> words{};
  std::vector<SourceLine> body{};
  std::optional<Kind> kind{};  ///< nothing when the first word is no statement's
  bool counts = false;         ///< it, or a line of its expectation, may be another in each round of a loop
};

/// What lines refer to.
struct SourceText {
  std::string whole;
  Texts words;  ///< those that do not stand in it as they are
};

using Report = std::function<void(const SourceLine&, const SyntaxError&)>;

/// The lines of a scenario as they are nested: those of loops are statements, those of expectations one word each.
std::vector<SourceLine> ReadSource(const Language& language, SourceText& text, const Report& report);

}  // namespace scenario

#endif
