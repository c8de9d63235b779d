#ifndef SCENARIO_SOURCE_LINE_H
#define SCENARIO_SOURCE_LINE_H

#include <deque>
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
  const std::string* file = nullptr;  ///< its name in messages
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
  std::string file;  ///< its name in messages
  std::string whole;
  unsigned first_line = 1;  ///< its number in messages
  Texts words{};            ///< those that do not stand in it as they are
};

using Report = std::function<void(const SourceLine&, const SyntaxError&)>;

/// The lines of the last text as they are nested: those of loops are statements, those of expectations one word each.
/// Included files become texts, too, and their lines stand where they are included.
std::vector<SourceLine> ReadSource(const Language& language, std::deque<SourceText>& texts, const Report& report);

}  // namespace scenario

#endif
