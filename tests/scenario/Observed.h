#ifndef TESTS_SCENARIO_OBSERVED_H
#define TESTS_SCENARIO_OBSERVED_H

#include <string>
#include <vector>

#include "scenario/Run.h"
#include "tests/scenario/Parsed.h"

/// A step that outlives its run.
struct KeptStep {
  unsigned line;
  scenario::Counters rounds;
  std::string text;
  scenario::Kind kind;
  scenario::Content content;

  const scenario::Trace& trace() const { return std::get<scenario::Trace>(content); }
};

/// What a run tells.
class Observed : public scenario::Observer {
 public:
  /// Runs the scenario. What the module does when it starts is the first step.
  explicit Observed(const scenario::Scenario& scenario, const scenario::Options& options = {}) {
    scenario::RunScenario(scenario, softcard::Card::Get(), options, *this);
  }
  explicit Observed(const std::string& text, const scenario::Options& options = {}) : Observed(Usable(text), options) {}

  void Took(const scenario::Step& step) override {
    steps.push_back({step.line, step.rounds, step.Text(), step.kind, step.content});
  }
  void Ended(const std::string& ended_file, const scenario::Tally& ended_tally) override {
    file = ended_file;
    tally = ended_tally;
  }

  /// The step of a line, the last one if there are several.
  const KeptStep& At(unsigned line) const {
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
      if (step->line == line) return *step;
    }
    throw "no step of line " + std::to_string(line);
  }

  std::vector<KeptStep> steps;
  std::string file;
  scenario::Tally tally;
};

/// Everything that is told, as text, but for the start.
inline std::string Transcript(const Observed& observed) {
  std::string text;
  for (const KeptStep& step : observed.steps) {
    if (step.line == 0) continue;
    text += std::to_string(step.line) + ' ' + step.text + '\n';
    if (const auto* trace = std::get_if<scenario::Trace>(&step.content)) {
      for (const scenario::TraceLine& line : trace->lines) {
        text += std::string(std::size_t{2} * line.depth, ' ') + line.Text() + '\n';
      }
      text += "=> " + trace->result.Text() + '\n';
    } else if (const auto* shown = std::get_if<scenario::Shown>(&step.content)) {
      for (const scenario::ShownTable& table : shown->tables) {
        text += table.name + '\n';
        for (const softcard::Row& row : table.rows) text += softcard::Text(row) + '\n';
      }
    } else if (const auto* checked = std::get_if<scenario::Checked>(&step.content); checked && checked->failure) {
      for (const std::string& line : *checked->failure) text += line + '\n';
    }
  }
  return text;
}

/// The expectations that do not hold, "LINE: TEXT" and why; "" when all do.
inline std::string Failures(const std::string& text) {
  const Observed observed(text);
  std::string failures;
  for (const KeptStep& step : observed.steps) {
    const auto* checked = std::get_if<scenario::Checked>(&step.content);
    if (checked == nullptr || !checked->failure) continue;
    failures += std::to_string(step.line) + ": " + step.text + '\n';
    for (const std::string& line : *checked->failure) failures += "    " + line + '\n';
  }
  return failures;
}

#endif
