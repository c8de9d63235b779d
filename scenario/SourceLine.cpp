#include "scenario/SourceLine.h"

#include <algorithm>

#include "scenario/Suggestion.h"

namespace scenario {
namespace {

class Reader {
 public:
  Reader(const Language& language, SourceText& text, const Report& report)
      : language_(language), rest_(text.whole), texts_(text.words), report_(report) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (rest_.substr(0, kByteOrderMark.size()) == kByteOrderMark) rest_.remove_prefix(kByteOrderMark.size());
  }

  /// The statements up to the opener's `end`; without an opener those up to the end of the text.
  std::vector<SourceLine> Statements(const SourceLine* opener, unsigned depth = 0) {
    std::vector<SourceLine> lines;
    while (auto line = Next()) {
      if (!Split(*line)) continue;
      const Statement* const statement = language_.Find(line->words[0].text);
      if (statement != nullptr) line->kind = statement->kind;
      if (line->kind == Kind::kEnd) {
        if (line->words.size() > 1) Complain(*line, line->words[1], "nothing follows \"end\" on its line");
        if (opener != nullptr) return lines;
        Complain(*line, line->words[0], "there is no \"for\" or \"expect\" that this \"end\" ends");
        continue;
      }
      if (line->kind == Kind::kLoop) {
        if (depth == kMaxDepth) {
          Complain(*line, line->words[0], "more than " + std::to_string(kMaxDepth) + " loops within each other");
          return lines;
        }
        line->body = Statements(&*line, depth + 1);
      } else if (language_.HasBlock(line->words)) {
        line->body = Block(*line);
      }
      line->counts = Counts(*line);
      lines.push_back(*std::move(line));
    }
    if (opener != nullptr) ComplainOfNoEnd(*opener);
    return lines;
  }

 private:
  static constexpr unsigned kMaxDepth = 10;

  /// The next line that is neither empty nor a comment.
  std::optional<SourceLine> Next() {
    while (!rest_.empty()) {
      const std::size_t end = std::min(rest_.find('\n'), rest_.size());
      SourceLine line{++number_, rest_.substr(0, end)};
      rest_.remove_prefix(std::min(end + 1, rest_.size()));
      const std::string_view trimmed = Trim(line.text);
      if (!trimmed.empty() && trimmed[0] != '#') return line;
    }
    return std::nullopt;
  }

  bool Split(SourceLine& line) {
    const auto offset = [&](std::string_view part) { return static_cast<std::size_t>(part.data() - line.text.data()); };
    constexpr std::string_view kSay = "say ";
    const std::string_view trimmed = Trim(line.text);
    // What is said is no list of words: it may hold quotes and '#'.
    if (trimmed.substr(0, kSay.size()) == kSay) {
      const std::string_view said = Trim(trimmed.substr(kSay.size()));
      line.statement = trimmed;
      line.words = {{"say", offset(trimmed)}, {said, offset(said), true}};
      return true;
    }
    try {
      line.words = Tokenize(line.text, texts_);
      line.statement = WithoutComment(line.text);
      return true;
    } catch (const SyntaxError& error) {
      report_(line, error);
      return false;
    }
  }

  /// The lines of an expectation: anything, up to a line that says `end`.
  std::vector<SourceLine> Block(const SourceLine& opener) {
    std::vector<SourceLine> lines;
    while (auto line = Next()) {
      const std::string_view trimmed = Trim(line->text);
      if (trimmed == "end") return lines;
      line->words = {{trimmed, static_cast<std::size_t>(trimmed.data() - line->text.data()), true}};
      lines.push_back(*std::move(line));
    }
    ComplainOfNoEnd(opener);
    return lines;
  }

  void ComplainOfNoEnd(const SourceLine& opener) {
    Complain(opener, opener.words[0], "no line says \"end\" to what begins here");
  }

  void Complain(const SourceLine& line, const Token& where, const std::string& message) {
    report_(line, {where.offset, message});
  }

  static bool Counts(const SourceLine& line) {
    const auto has_counter = [](const Token& word) { return word.text.find('$') != std::string_view::npos; };
    return std::any_of(line.words.begin(), line.words.end(), has_counter) ||
           std::any_of(line.body.begin(), line.body.end(), Counts);
  }

  const Language& language_;
  std::string_view rest_;
  Texts& texts_;
  const Report& report_;
  unsigned number_ = 0;
};

}  // namespace

std::vector<SourceLine> ReadSource(const Language& language, SourceText& text, const Report& report) {
  return Reader(language, text, report).Statements(nullptr);
}

}  // namespace scenario
