#include "scenario/SourceLine.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "scenario/SourceFile.h"
#include "scenario/Suggestion.h"

namespace scenario {
namespace {

class Reader {
 public:
  /// Reads the last of the texts. `path` is of the files that lead to it, each of which includes the next one.
  Reader(const Language& language, std::deque<SourceText>& texts, std::vector<std::filesystem::path> path,
         const Report& report)
      : language_(language),
        all_texts_(texts),
        text_(texts.back()),
        rest_(text_.whole),
        path_(std::move(path)),
        report_(report),
        number_(text_.first_line - 1) {
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
      if (line->kind == Kind::kInclude) {
        Include(*line, lines);
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
      const std::size_t end = std::min(rest_.find_first_of("\r\n"), rest_.size());
      SourceLine line{&text_.file, ++number_, rest_.substr(0, end)};
      rest_.remove_prefix(std::min(end + (rest_.substr(end, 2) == "\r\n" ? 2 : 1), rest_.size()));
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
      line.words = Tokenize(line.text, text_.words);
      line.statement = WithoutComment(line.text);
      return true;
    } catch (const SyntaxError& error) {
      report_(line, error);
      return false;
    }
  }

  void Include(const SourceLine& line, std::vector<SourceLine>& lines) {
    try {
      const Fields fields(language_.Find(line.words[0].text)->form, line.words, 1);
      const Token& name = fields.words()[0];
      if (name.text == "-") {
        throw SyntaxError{name.offset, "no scenario includes standard input; name a file, or ./- for one called \"-\""};
      }
      const std::filesystem::path file = std::filesystem::path(text_.file).parent_path() / name.text;
      std::error_code none;
      std::vector<std::filesystem::path> path = path_;
      path.push_back(std::filesystem::weakly_canonical(file, none));
      if (std::count(path.begin(), path.end(), path.back()) > 1) {
        throw SyntaxError{name.offset, Quoted(file.string()) + " includes itself"};
      }
      // Whoever waits for a pipe or a terminal may wait for ever.
      const auto kind = std::filesystem::status(file, none).type();
      if (kind == std::filesystem::file_type::fifo || kind == std::filesystem::file_type::character) {
        throw SyntaxError{name.offset, Quoted(file.string()) + " is no file that can be read twice; name one that is"};
      }
      std::size_t most = kMostSource;
      for (const SourceText& text : all_texts_) most -= std::min(most, text.whole.size() + 1);
      try {
        all_texts_.push_back({file.string(), ReadFile(file.string(), most)});
      } catch (const std::runtime_error& error) {
        throw SyntaxError{name.offset, error.what()};
      }
      for (SourceLine& included : Reader(language_, all_texts_, path, report_).Statements(nullptr)) {
        lines.push_back(std::move(included));
      }
    } catch (const SyntaxError& error) {
      report_(line, error);
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
  std::deque<SourceText>& all_texts_;
  SourceText& text_;
  std::string_view rest_;
  const std::vector<std::filesystem::path> path_;
  const Report& report_;
  unsigned number_;
};

}  // namespace

std::vector<SourceLine> ReadSource(const Language& language, std::deque<SourceText>& texts, const Report& report) {
  std::error_code none;
  return Reader(language, texts, {std::filesystem::weakly_canonical(texts.back().file, none)}, report)
      .Statements(nullptr);
}

}  // namespace scenario
