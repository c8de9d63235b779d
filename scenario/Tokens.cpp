#include "scenario/Tokens.h"

#include "scenario/SyntaxError.h"

namespace scenario {
namespace {

constexpr std::string_view kBlanks = " \t\r";

bool IsBlank(char c) { return kBlanks.find(c) != std::string_view::npos; }

/// Reads the token that begins at `position` and moves `position` behind it.
Token ReadToken(std::string_view line, std::size_t& position) {
  Token token{"", position, line[position] == '"'};
  std::size_t open_quote = std::string_view::npos;
  for (; position < line.size() && (open_quote != std::string_view::npos || !IsBlank(line[position])); ++position) {
    char c = line[position];
    if (c == '"') {
      open_quote = open_quote == std::string_view::npos ? position : std::string_view::npos;
      continue;
    }
    const bool escape = c == '\\' && open_quote != std::string_view::npos && position + 1 < line.size() &&
                        (line[position + 1] == '"' || line[position + 1] == '\\');
    if (escape) c = line[++position];
    token.text += c;
  }
  if (open_quote != std::string_view::npos) throw SyntaxError{open_quote, "this quote is not closed"};
  return token;
}

/// Calls `consume(token)` for each token; returns the end of the last one.
template <typename Consume>
std::size_t Scan(std::string_view line, Consume consume) {
  std::size_t end = 0;
  for (std::size_t position = 0; position < line.size();) {
    if (IsBlank(line[position])) {
      ++position;
      continue;
    }
    if (line[position] == '#') break;
    consume(ReadToken(line, position));
    end = position;
  }
  return end;
}

}  // namespace

std::vector<Token> Tokenize(std::string_view line) {
  std::vector<Token> tokens;
  Scan(line, [&](Token&& token) { tokens.push_back(std::move(token)); });
  return tokens;
}

std::string_view WithoutComment(std::string_view line) {
  return Trim(line.substr(0, Scan(line, [](const Token&) {})));
}

std::vector<Token> Elements(const Token& list) {
  std::vector<Token> elements;
  if (list.text.empty()) return elements;
  for (std::size_t begin = 0;;) {
    const std::size_t comma = list.text.find(',', begin);
    elements.push_back({list.text.substr(begin, comma - begin), list.offset + begin});
    if (comma == std::string::npos) return elements;
    begin = comma + 1;
  }
}

std::string_view Trim(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

}  // namespace scenario
