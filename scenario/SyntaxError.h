#ifndef SCENARIO_SYNTAX_ERROR_H
#define SCENARIO_SYNTAX_ERROR_H

#include <cstddef>
#include <string>

namespace scenario {

/// Why a line of a scenario is unusable. Thrown by whatever reads a part of the line, caught by the parser.
struct SyntaxError {
  std::size_t offset;   ///< byte of the line at which the caret points, from 0
  std::string message;  ///< what is wrong and, after a semicolon, what would be right
  std::string usage{};  ///< the statement's form, if that helps
};

}  // namespace scenario

#endif
