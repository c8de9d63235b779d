#ifndef SCENARIO_TOKENS_H
#define SCENARIO_TOKENS_H

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace scenario {

/// A word of a line. Words are separated by blanks; double quotes keep blanks together: `throw "no room"`. Refers to
/// the line, or to what keeps its text.
struct Token {
  std::string_view text;  ///< without the quotes
  std::size_t offset;     ///< of its first byte in the line
  bool quoted = false;    ///< it begins with a quote
};

/// Keeps the texts of words that do not stand in the line as they are; they stay where they are.
using Texts = std::deque<std::string>;

/// The words of a line up to a word that begins with '#', the comment. Within quotes \" is a quote and \\ a backslash.
/// Throws SyntaxError when a quote is not closed.
std::vector<Token> Tokenize(std::string_view line, Texts& texts);

/// The line without its comment and the blanks around it.
std::string_view WithoutComment(std::string_view line);

/// A list's elements: "drop,cpu" is "drop" and "cpu", each with its own place; an empty token has none.
std::vector<Token> Elements(const Token& list);

/// The part of a token behind its first `size` bytes, with its own place.
inline Token Behind(const Token& token, std::size_t size) { return {token.text.substr(size), token.offset + size}; }

std::string_view Trim(std::string_view text);

}  // namespace scenario

#endif
