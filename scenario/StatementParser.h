#ifndef SCENARIO_STATEMENT_PARSER_H
#define SCENARIO_STATEMENT_PARSER_H

#include <optional>
#include <string>
#include <vector>

#include "scenario/Scenario.h"
#include "scenario/Tokens.h"

/// One statement from its words. Every function throws SyntaxError when they are none.
namespace scenario {

using Action = decltype(Statement::action);

/// Any statement but `card` and loops. `block`: the lines between an expectation's first line and its `end`.
Action ParseStatement(const std::vector<Token>& words, const std::vector<std::string>& block,
                      const softcard::CardDescription& card);

softcard::CardDescription ParseCard(const std::vector<Token>& words);

/// Nothing when the first word is no request's.
std::optional<Request> ParseRequest(const std::vector<Token>& words, const softcard::CardDescription& card);

/// `words` begin with "expect".
Expectation ParseExpectation(const std::vector<Token>& words, const std::vector<std::string>& block);

/// Whether a statement that begins so has lines of its own, up to an `end`.
bool HasBlock(const std::vector<Token>& words);

/// The first words of all requests.
std::vector<std::string> RequestNames();

}  // namespace scenario

#endif
