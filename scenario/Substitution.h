#ifndef SCENARIO_SUBSTITUTION_H
#define SCENARIO_SUBSTITUTION_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "scenario/Tokens.h"

namespace scenario {

/// The counters of the loops around a line, the innermost last.
using Counters = std::vector<std::pair<std::string, std::int64_t>>;

/// "I=3, J=1".
std::string RoundText(const Counters& counters);

/// Appends the token's text with every $COUNTER and $(EXPRESSION) replaced by its value in decimal. An expression knows
/// the counters, decimal numbers, parentheses and + - * / % as in C++, without blanks; $$ is a dollar sign. Throws
/// SyntaxError.
void Substitute(const Token& token, const Counters& counters, std::string& text);

}  // namespace scenario

#endif
