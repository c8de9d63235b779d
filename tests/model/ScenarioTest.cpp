#include <gtest/gtest.h>

#include "scenario/Performer.h"
#include "scenario/ScenarioParser.h"
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
  for (const auto& request : requests)
    for (const auto& line : CallsAndLog(subject.Run(request))) lines.push_back(line);
  return lines;
}

/// Does what a scenario's statement says; expectations and shows are not among what a generator prints.
struct Doer {
  scenario::Performer performer;
  std::vector<std::string> lines;

  void operator()(const scenario::Request& request) { Take(performer.Perform(request)); }
  void operator()(const scenario::Client& client) { Take(performer.Perform(client)); }
  void operator()(const scenario::Fault& fault) {
    softcard::Card::Get().faults().FailNth(fault.function, fault.number, fault.result);
  }
  void operator()(const scenario::ClearFaults&) { softcard::Card::Get().faults().Clear(); }
  template <typename Other>
  void operator()(const Other&) {
    ADD_FAILURE() << "a statement that is no request";
  }

  void Take(const scenario::Record& record) {
    for (const auto& line : record.trace)
      if (line.kind == scenario::TraceLine::Kind::kCall || line.kind == scenario::TraceLine::Kind::kLog)
        lines.push_back(line.text);
  }
};

std::vector<std::string> OnTheConsole(const scenario::Scenario& scenario) {
  const Subject silence_earlier_clients;
  const softcard::Record record(softcard::Card::Get().log(), softcard::CallLog::Recording::kCalls);
  Doer doer;
  for (const auto& statement : scenario.statements) std::visit(doer, statement.action);
  return doer.lines;
}

}  // namespace

TEST(AScenarioPrintedForRandomRequests, MakesTheSameCallsAndLogLinesInTheConsole) {
  for (unsigned long seed = 1; seed <= 50; ++seed) {
    const auto requests = Generator(seed).Sequence(30);
    const auto parsed = scenario::ParseScenario("printed", Scenario(requests));
    ASSERT_TRUE(parsed.complaints.empty()) << parsed.complaints[0].Text("printed");
    OnTheModule(requests);  // makes the clients known: a name that is new logs less
    const auto lines = OnTheModule(requests);
    ASSERT_EQ(OnTheConsole(parsed.scenario), lines) << "seed " << seed << '\n' << Scenario(requests);
  }
}
