#ifndef TESTS_SCENARIO_PARSED_H
#define TESTS_SCENARIO_PARSED_H

#include <string>

#include "scenario/ScenarioParser.h"

/// All complaints about a scenario called "test.scn", as the console shows them.
inline std::string Complaints(const std::string& text) {
  std::string complaints;
  for (const scenario::Complaint& complaint : scenario::ParseScenario("test.scn", text).complaints) {
    complaints += complaint.Text("test.scn");
  }
  return complaints;
}

/// The first complaint without the source line: "LINE:COLUMN: MESSAGE"; "" when the scenario is usable.
inline std::string FirstComplaint(const std::string& text) {
  const auto complaints = scenario::ParseScenario("test.scn", text).complaints;
  if (complaints.empty()) return "";
  return std::to_string(complaints[0].line) + ":" + std::to_string(complaints[0].column) + ": " + complaints[0].message;
}

inline scenario::Scenario Usable(const std::string& text) {
  scenario::ParsedScenario parsed = scenario::ParseScenario("test.scn", text);
  for (const scenario::Complaint& complaint : parsed.complaints) throw complaint.Text("test.scn");
  return std::move(parsed.scenario);
}

#endif
