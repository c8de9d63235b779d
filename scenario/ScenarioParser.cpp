#include <algorithm>
#include <set>
#include <tuple>

#include "scenario/LineReader.h"
#include "scenario/Scenario.h"
#include "scenario/Suggestion.h"

namespace scenario {
namespace {

using About = Expectation::About;

constexpr std::size_t kMaxComplaints = 20;

/// Reads every line in every round of the loops around it, as the run will, and keeps nothing of it.
class Checker {
 public:
  Checker(Scenario& scenario, Past& past, std::size_t most_statements, const Report& report)
      : scenario_(scenario),
        past_(past),
        most_statements_(most_statements),
        report_(report),
        reader_(*scenario.language, past),
        rounds_(scenario.definitions) {}

  void CheckAll() {
    Check(scenario_.lines);
    scenario_.card = past_.card;
    scenario_.watchers = past_.watchers;
  }

 private:
  void Check(const std::vector<SourceLine>& lines) {
    for (const SourceLine& line : lines) {
      if (!unusable_.empty() && unusable_.count(&line) != 0) continue;
      try {
        CheckLine(line);
      } catch (const SyntaxError& error) {
        Complain(line, error);
      }
    }
  }

  void CheckLine(const SourceLine& line) {
    if (line.kind == Kind::kLoop) {
      CheckLoop(line);
    } else if (line.kind == Kind::kCard) {
      CheckCard(line);
    } else if (CheckTexts(line)) {
      if (statements_ == most_statements_) throw TooLong(line);
      CheckOrder(line, reader_.Read(line, rounds_));
      ++statements_;
      past_.begun = true;
    }
  }

  void CheckCard(const SourceLine& line) {
    const Token& name = line.words[0];
    if (rounds_.size() > scenario_.definitions.size() || past_.begun) {
      throw SyntaxError{name.offset, "\"card\" comes once, before everything else"};
    }
    past_.begun = true;
    past_.card = reader_.ReadCard(line, rounds_);
  }

  void CheckLoop(const SourceLine& line) {
    const Loop loop = reader_.ReadLoop(line, rounds_);
    const auto rounds = static_cast<std::size_t>(loop.last - loop.first) + 1;
    loop_rounds_ += rounds;
    if (loop_rounds_ > most_statements_ || statements_ + rounds * Statements(line.body) > most_statements_) {
      throw TooLong(line);
    }
    for (std::int64_t value = loop.first; value <= loop.last; ++value) {
      rounds_.emplace_back(loop.counter, value);
      Check(line.body);
      rounds_.pop_back();
    }
  }

  /// How many come out of one round, at least.
  static std::size_t Statements(const std::vector<SourceLine>& lines) {
    std::size_t count = 0;
    for (const SourceLine& line : lines) count += line.kind == Kind::kLoop ? Statements(line.body) : 1;
    return count;
  }

  SyntaxError TooLong(const SourceLine& line) const {
    return {line.words[0].offset,
            "the scenario has more than " + std::to_string(most_statements_) + " lines with the rounds of its loops"};
  }

  /// Whether counters can be replaced in the line as a whole, which a step shows, and in each line of its block.
  bool CheckTexts(const SourceLine& line) {
    if (!line.counts) return true;
    if (whole_.insert(&line).second) {
      std::string text;
      Substitute({line.statement, 0}, rounds_, text);
    }
    bool good = true;
    for (const SourceLine& row : line.body) {
      try {
        std::string text;
        Substitute(row.words[0], rounds_, text);
      } catch (const SyntaxError& error) {
        Complain(row, error);
        good = false;
      }
    }
    if (!good) unusable_.insert(&line);
    return good;
  }

  /// What a statement needs of those before it.
  void CheckOrder(const SourceLine& line, const ReadStatement& statement) {
    const Token& name = line.words[0];
    switch (statement.kind) {
      case Kind::kStart:
        if (past_.started) {
          throw SyntaxError{name.offset,
                            "\"start\" comes before every request; without it the module starts first of all"};
        }
        scenario_.starts_itself = true;
        break;
      case Kind::kExpectation:
        if (statement.about == About::kPacket && !past_.is_packet && unusable_.empty()) {
          throw SyntaxError{name.offset, past_.last_request.empty()
                                             ? "no packet comes before this expectation of its way"
                                             : Quoted(past_.last_request) + " sends no packet"};
        }
        if (statement.about == About::kModule && past_.is_packet && unusable_.empty()) {
          throw SyntaxError{name.offset,
                            Quoted(past_.last_request) + " sends a packet, of which the module hears nothing"};
        }
        if (statement.about == About::kResult && !past_.has_result && unusable_.empty()) {
          throw SyntaxError{name.offset, past_.last_request.empty()
                                             ? "no request comes before this expectation of its result"
                                             : Quoted(past_.last_request) + " has no result"};
        }
        return;
      case Kind::kRequest:
      case Kind::kClient:
      case Kind::kPacket: break;
      default: return;
    }
    past_.started = true;
    past_.last_request = name.text;
    past_.has_result = statement.kind == Kind::kRequest;
    past_.is_packet = statement.kind == Kind::kPacket;
  }

  /// Once is enough for a line of a loop.
  void Complain(const SourceLine& line, SyntaxError error) {
    unusable_.insert(&line);
    if (rounds_.size() > scenario_.definitions.size()) error.message += " (with " + RoundText(rounds_) + ")";
    report_(line, error);
  }

  Scenario& scenario_;
  Past& past_;
  const std::size_t most_statements_;
  const Report& report_;
  LineReader reader_;
  Counters rounds_;
  std::size_t statements_ = 0;
  std::size_t loop_rounds_ = 0;             ///< of all loops, empty ones too
  std::set<const SourceLine*> unusable_{};  ///< lines that were reported
  std::set<const SourceLine*> whole_{};     ///< lines that were looked at as a whole
};

/// The number of characters in UTF-8 text.
unsigned Characters(std::string_view text) {
  unsigned count = 0;
  for (const char c : text) count += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  return count;
}

}  // namespace

std::string Complaint::Text() const {
  // A tab before the place is a tab above the caret too, whatever its width.
  std::string indent;
  for (const char c : Printable(std::string_view(source).substr(0, offset))) {
    if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) indent += c == '\t' ? '\t' : ' ';
  }
  return Printable(file) + ":" + std::to_string(line) + ":" + std::to_string(column) + ": error: " + message + "\n  " +
         Printable(source) + "\n  " + indent + "^\n" + (usage.empty() ? "" : "  usage: " + usage + "\n");
}

ParsedScenario ParseScenario(const Language& language, const std::string& file, std::string text,
                             const Counters& definitions) {
  return ParseScenario(language, {file, std::move(text)}, definitions, {}, kMostStatements);
}

ParsedScenario ParseScenario(const Language& language, SourceText text, const Counters& definitions, Past past,
                             std::size_t most_statements) {
  ParsedScenario parsed;
  parsed.past = std::move(past);
  Scenario& scenario = parsed.scenario;
  const Report report = [&](const SourceLine& line, const SyntaxError& error) {
    if (parsed.complaints.size() == kMaxComplaints) {
      ++parsed.more_complaints;
      return;
    }
    constexpr std::size_t kBefore = 100, kShown = 300;
    const std::size_t begin = line.text.size() > kShown && error.offset > kBefore ? error.offset - kBefore : 0;
    parsed.complaints.push_back({*line.file, line.number, Characters(line.text.substr(0, error.offset)) + 1,
                                 error.message, error.usage, std::string(line.text.substr(begin, kShown)),
                                 error.offset - begin});
  };
  scenario.file = text.file;
  scenario.language = &language;
  scenario.definitions = definitions;
  scenario.texts.push_back(std::move(text));
  scenario.lines = ReadSource(language, scenario.texts, report);
  Checker(scenario, parsed.past, most_statements, report).CheckAll();
  std::stable_sort(parsed.complaints.begin(), parsed.complaints.end(), [](const Complaint& a, const Complaint& b) {
    return std::tie(a.file, a.line) < std::tie(b.file, b.line);
  });
  return parsed;
}

}  // namespace scenario
