#include "scenario/Tokens.h"

#include <utility>

#include "scenario/SyntaxError.h"

namespace scenario {
namespace {

constexpr std::string_view kBlanks = " \t\r";

bool IsBlank(char c) { return kBlanks.find(c) != std::string_view::npos; }

/// The end of the word that begins at `begin`.
std::size_t EndOfWord(std::string_view line, std::size_t begin) {
  std::size_t open_quote = std::string_view::npos;
  std::size_t end = begin;
  for (; end < line.size() && (open_quote != std::string_view::npos || !IsBlank(line[end])); ++end) {
    if (line[end] == '"') {
      open_quote = open_quote == std::string_view::npos ? end : std::string_view::npos;
    } else if (line[end] == '\\' && open_quote != std::string_view::npos && end + 1 < line.size() &&
               (line[end + 1] == '"' || line[end + 1] == '\\')) {
      ++end;
    }
  }
  if (open_quote != std::string_view::npos) throw SyntaxError{open_quote, "this quote is not closed"};
  return end;
}

/// A word as it is meant.
std::string WithoutQuotes(std::string_view word) {
  std::string text;
  bool quoted = false;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (word[i] == '"') {
      quoted = !quoted;
      continue;
    }
    const bool escape = word[i] == '\\' && quoted && i + 1 < word.size() && (word[i + 1] == '"' || word[i + 1] == '\\');
    if (escape) ++i;
    text += word[i];
  }
  return text;
}

/// Calls `consume(word, offset)` for each word as it is written; returns the end of the last one.
template <typename Consume>
std::size_t Scan(std::string_view line, Consume consume) {
  std::size_t end = 0;
  for (std::size_t position = 0; position < line.size();) {
    if (IsBlank(line[position])) {
      ++position;
      continue;
    }
    if (line[position] == '#') break;
    end = EndOfWord(line, position);
    consume(line.substr(position, end - position), position);
    position = end;
  }
  return end;
}

}  // namespace

std::vector<Token> Tokenize(std::string_view line, Texts& texts) {
  std::vector<Token> tokens;
  Scan(line, [&](std::string_view word, std::size_t offset) {
    const bool as_it_is = word.find('"') == std::string_view::npos;
    tokens.push_back({as_it_is ? word : texts.emplace_back(WithoutQuotes(word)), offset, word[0] == '"'});
  });
  return tokens;
}

std::string_view WithoutComment(std::string_view line) {
  return Trim(line.substr(0, Scan(line, [](std::string_view, std::size_t) {})));
}

std::vector<Token> Elements(const Token& list) {
  std::vector<Token> elements;
  if (list.text.empty()) return elements;
  for (std::size_t begin = 0;;) {
    const std::size_t comma = list.text.find(',', begin);
    elements.push_back({list.text.substr(begin, comma - begin), list.offset + begin});
    if (comma == std::string_view::npos) return elements;
    begin = comma + 1;
  }
}

std::string_view Trim(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

}  // namespace scenario
