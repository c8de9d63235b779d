#include <gtest/gtest.h>

#include "scenario/Run.h"
#include "tests/model/Generator.h"
#include "tests/model/Subject.h"

using namespace model;

namespace {

/// The calls and log lines among what a subject has seen.
std::vector<std::string> CallsAndLog(const std::vector<std::string>& transcript) {
  std::vector<std::string> lines;
  for (const auto& line : transcript) {
    const bool call = line.find('(') < line.find(' ') && line.find("_mng()") == std::string::npos;
    if (call || line.compare(0, 4, "log ") == 0) lines.push_back(line);
  }
  return lines;
}

std::vector<std::string> OnTheModule(const std::vector<Request>& requests) {
  Subject subject;
  std::vector<std::string> lines;
  for (const auto& request : requests) {
    for (const auto& line : CallsAndLog(subject.Run(request))) lines.push_back(line);
  }
  return lines;
}

/// Keeps the calls and log lines of a run.
struct Listener : scenario::Observer {
  void Took(const scenario::Step& step) override {
    const auto* const trace = std::get_if<scenario::Trace>(&step.content);
    if (trace == nullptr) return;
    for (const scenario::TraceLine& line : trace->lines) {
      if (line.kind() == scenario::TraceLine::Kind::kCall || line.kind() == scenario::TraceLine::Kind::kLog) {
        lines.push_back(calls::UnmarkedText(std::get<calls::Event>(line.what), softcard::kLimIdNames));
      }
    }
  }
  void Ended(const std::string&, const scenario::Tally&) override {}

  std::vector<std::string> lines;
};

std::vector<std::string> InTheConsole(const scenario::Scenario& scenario) {
  Listener listener;
  scenario::RunScenario(scenario, softcard::Card::Get(), {}, listener);
  return listener.lines;
}

}  // namespace

TEST(AScenarioPrintedForRandomRequests, MakesTheSameCallsAndLogLinesInTheConsole) {
  scenario::Language language;
  scenario::AddStandard(language);
  for (unsigned long seed = 1; seed <= 50; ++seed) {
    const auto requests = Generator(seed).Sequence(30);
    const auto parsed = scenario::ParseScenario(language, "printed", Scenario(requests));
    ASSERT_TRUE(parsed.complaints.empty()) << parsed.complaints[0].Text();
    OnTheModule(requests);  // makes the clients known: a name that is new logs less
    const auto lines = OnTheModule(requests);
    ASSERT_EQ(InTheConsole(parsed.scenario), lines) << "seed " << seed << '\n' << Scenario(requests);
  }
}
