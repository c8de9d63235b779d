#include "scenario/ScenarioParser.h"

#include <algorithm>
#include <cctype>
#include <limits>
#include <set>

#include "scenario/SourceLine.h"
#include "scenario/StatementParser.h"
#include "scenario/Substitution.h"
#include "scenario/Suggestion.h"
#include "scenario/SyntaxError.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

constexpr std::size_t kMaxComplaints = 20;
constexpr std::size_t kMaxStatements = 4'000'000;

/// "for I in 1..300".
struct Loop {
  std::string counter;
  std::int64_t first;
  std::int64_t last;
};

Loop ParseLoop(const std::vector<Token>& words) {
  constexpr char kUsage[] = "for COUNTER in FIRST..LAST";
  if (words.size() != 4 || words[2].text != "in") throw SyntaxError{words[0].offset, "this is no loop", kUsage};
  const std::string& counter = words[1].text;
  if (!std::all_of(counter.begin(), counter.end(), [](unsigned char c) { return std::isalpha(c) || c == '_'; })) {
    throw SyntaxError{words[1].offset, Quoted(counter) + " is no name for a counter; use letters", kUsage};
  }
  const Token& range = words[3];
  const std::size_t dots = range.text.find("..");
  if (dots == std::string::npos) throw SyntaxError{range.offset, Quoted(range.text) + " is no range", kUsage};
  const auto number = [&](const Token& word) {
    constexpr long long kHighest = std::numeric_limits<unsigned>::max();
    return ToNumber(word, "end of a range", -kHighest, kHighest);
  };
  Loop loop{counter, number({range.text.substr(0, dots), range.offset}),
            number({range.text.substr(dots + 2), range.offset + dots + 2})};
  if (loop.first > loop.last) throw SyntaxError{range.offset, "this range is empty; a loop counts up", kUsage};
  return loop;
}

/// Unrolls loops and parses every line that comes out.
class Unroller {
 public:
  Unroller(Scenario& scenario, const Report& report) : scenario_(scenario), report_(report) {}

  void Unroll(const std::vector<SourceLine>& lines) {
    for (const SourceLine& line : lines) {
      if (unusable_.count(line.number) != 0) continue;
      try {
        UnrollLine(line);
      } catch (const SyntaxError& error) {
        // Once is enough for a line of a loop.
        unusable_.insert(line.number);
        report_(line, InThisRound(error));
      }
    }
  }

 private:
  void UnrollLine(const SourceLine& line) {
    std::vector<Token> words;
    for (const Token& word : line.words) words.push_back(Substitute(word, counters_));
    if (words[0].text == "for") {
      UnrollLoop(line, ParseLoop(words));
    } else if (words[0].text == "card") {
      if (!counters_.empty() || !scenario_.statements.empty() || card_given_) {
        throw SyntaxError{words[0].offset, "\"card\" comes once, before everything else"};
      }
      card_given_ = true;
      scenario_.card = ParseCard(words);
    } else {
      Add(line, words);
    }
  }

  void UnrollLoop(const SourceLine& line, const Loop& loop) {
    const auto rounds = static_cast<std::size_t>(loop.last - loop.first) + 1;
    rounds_ += rounds;
    const std::size_t statements = scenario_.statements.size() + rounds * Statements(line.body);
    if (rounds_ > kMaxStatements || statements > kMaxStatements) throw TooLong(line);
    for (std::int64_t value = loop.first; value <= loop.last; ++value) {
      counters_.emplace_back(loop.counter, value);
      Unroll(line.body);
      counters_.pop_back();
    }
  }

  /// How many come out of one round, at least.
  static std::size_t Statements(const std::vector<SourceLine>& lines) {
    std::size_t count = 0;
    for (const SourceLine& line : lines) count += line.words[0].text == "for" ? Statements(line.body) : 1;
    return count;
  }

  static SyntaxError TooLong(const SourceLine& line) {
    return {line.words[0].offset,
            "the scenario has more than " + std::to_string(kMaxStatements) + " lines with the rounds of its loops"};
  }

  void Add(const SourceLine& line, const std::vector<Token>& words) {
    if (scenario_.statements.size() == kMaxStatements) throw TooLong(line);
    std::vector<std::string> block;
    for (const SourceLine& row : line.body) block.push_back(SubstituteRow(row));
    Statement statement{line.number, Substitute({std::string(line.statement), 0}, counters_).text,
                        ParseStatement(words, block, scenario_.card)};
    CheckOrder(statement, words[0]);
    scenario_.statements.push_back(std::move(statement));
  }

  std::string SubstituteRow(const SourceLine& row) {
    try {
      return Substitute(row.words[0], counters_).text;
    } catch (const SyntaxError& error) {
      report_(row, InThisRound(error));
      return "";
    }
  }

  /// What a statement needs of those before it.
  void CheckOrder(const Statement& statement, const Token& name) {
    if (const auto* request = std::get_if<Request>(&statement.action)) {
      if (request->operation == Operation::kStart && !last_request_.empty()) {
        throw SyntaxError{name.offset,
                          "\"start\" comes before every request; without it the module starts first of all"};
      }
      last_request_ = name.text;
      has_result_ = request->operation != Operation::kStart;
    } else if (std::holds_alternative<Client>(statement.action) || std::holds_alternative<Send>(statement.action)) {
      last_request_ = name.text;
      has_result_ = false;
    } else if (const auto* expectation = std::get_if<Expectation>(&statement.action)) {
      const bool about_result =
          expectation->kind == Expectation::Kind::kResult || expectation->kind == Expectation::Kind::kThrow;
      if (about_result && !has_result_ && unusable_.empty()) {
        throw SyntaxError{name.offset, last_request_.empty() ? "no request comes before this expectation of its result"
                                                             : Quoted(last_request_) + " has no result"};
      }
    }
  }

  /// The error with the round of the loops in which it came up.
  SyntaxError InThisRound(SyntaxError error) const {
    std::string round;
    for (const auto& [name, value] : counters_) {
      round += (round.empty() ? " (with " : ", ") + name + "=" + std::to_string(value);
    }
    if (!round.empty()) error.message += round + ")";
    return error;
  }

  Scenario& scenario_;
  const Report& report_;
  Counters counters_;
  bool card_given_ = false;
  std::size_t rounds_ = 0;       ///< of all loops, empty ones too
  std::set<unsigned> unusable_;  ///< numbers of lines that were reported
  std::string last_request_;
  bool has_result_ = false;
};

/// The number of characters in UTF-8 text.
unsigned Characters(std::string_view text) {
  unsigned count = 0;
  for (const char c : text) count += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  return count;
}

}  // namespace

std::string Complaint::Text(const std::string& file) const {
  // A tab before the place is a tab above the caret too, whatever its width.
  std::string indent;
  for (unsigned characters = 1, i = 0; characters < column && i < source.size(); ++i) {
    if ((static_cast<unsigned char>(source[i]) & 0xC0) == 0x80) continue;
    indent += source[i] == '\t' ? '\t' : ' ';
    ++characters;
  }
  return file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": error: " + message + "\n  " + source +
         "\n  " + indent + "^\n" + (usage.empty() ? "" : "  usage: " + usage + "\n");
}

ParsedScenario ParseScenario(const std::string& file, std::string_view text) {
  ParsedScenario parsed;
  parsed.scenario.file = file;
  const Report report = [&](const SourceLine& line, const SyntaxError& error) {
    if (parsed.complaints.size() == kMaxComplaints) return;
    std::string_view source = line.text;
    if (!source.empty() && source.back() == '\r') source.remove_suffix(1);
    parsed.complaints.push_back(
        {line.number, Characters(source.substr(0, error.offset)) + 1, error.message, error.usage, std::string(source)});
  };
  const std::vector<SourceLine> lines = ReadSource(text, report);
  Unroller(parsed.scenario, report).Unroll(lines);
  std::stable_sort(parsed.complaints.begin(), parsed.complaints.end(),
                   [](const Complaint& a, const Complaint& b) { return a.line < b.line; });
  return parsed;
}

}  // namespace scenario
