// Any text as a scenario: it is refused, with a place in it for each complaint, or it runs to its end.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "scenario/Run.h"

namespace {

constexpr unsigned long kMostStatements = 20'000;

/// About how many lines come out of the loops: a run, and the check before it, take their time for each. More than
/// kMostStatements for what is not plain.
unsigned long Statements(const std::string& text) {
  std::istringstream lines(text);
  std::vector<unsigned long> rounds = {1};
  unsigned long statements = 0;
  for (std::string line; std::getline(lines, line) && statements <= kMostStatements;) {
    std::istringstream stream(line);
    std::string word, next;
    stream >> word >> next;
    statements += rounds.back();
    if (const std::size_t dots = line.find(".."); word == "for" && dots != std::string::npos) {
      const std::string last = line.substr(dots + 2, line.find_first_not_of("0123456789", dots + 2) - dots - 2);
      const bool plain = line.find('$') == std::string::npos && line.find('-') == std::string::npos;
      if (!plain || last.empty() || last.size() > 5) return kMostStatements + 1;
      rounds.push_back(rounds.back() * std::max(1UL, std::stoul(last)));
    } else if (word == "expect" && (next == "trace" || next == "table")) {
      rounds.push_back(rounds.back());
    } else if (word == "end" && rounds.size() > 1) {
      rounds.pop_back();
    }
  }
  return statements;
}

const scenario::Language& TheLanguage() {
  static auto& language = *new scenario::Language;
  if (language.statements().empty()) AddStandard(language);
  return language;
}

/// Counts what it is told.
class Counting : public scenario::Observer {
 public:
  void Took(const scenario::Step& step) override {
    ++steps;
    if (const auto* trace = std::get_if<scenario::Trace>(&step.content)) {
      for (const scenario::TraceLine& line : trace->lines) characters += line.Text().size();
    }
  }
  void Ended(const std::string&, const scenario::Tally& tally) override { ended = tally.expectations + 1; }

  unsigned long steps = 0, characters = 0, ended = 0;
};

void Require(bool held, const char* what) {
  if (held) return;
  std::cerr << what << '\n';
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  // What else lies on the disk is no matter of the text.
  if (text.find("include") != std::string::npos || Statements(text) > kMostStatements) return 0;
  const scenario::ParsedScenario parsed = scenario::ParseScenario(TheLanguage(), "fuzz.scn", text);
  for (const scenario::Complaint& complaint : parsed.complaints) {
    Require(complaint.line > 0 && complaint.column > 0 && complaint.offset <= complaint.source.size(),
            "a complaint is about no place");
    Require(!complaint.Text().empty(), "a complaint says nothing");
  }
  if (!parsed.complaints.empty()) return 0;
  Counting counting;
  scenario::RunScenario(parsed.scenario, softcard::Card::Get(), {}, counting);
  Require(counting.ended > 0, "the run has no end");
  return 0;
}
