#ifndef TESTS_SCENARIO_PARSED_H
#define TESTS_SCENARIO_PARSED_H

#include <string>
#include <utility>

#include "scenario/Scenario.h"

inline const scenario::Language& TheLanguage() {
  static scenario::Language language;
  if (language.statements().empty()) AddStandard(language);
  return language;
}

/// A scenario called "test.scn".
inline scenario::ParsedScenario Parsed(const std::string& text) {
  return scenario::ParseScenario(TheLanguage(), "test.scn", text);
}

/// All complaints about it, as the console shows them.
inline std::string Complaints(const std::string& text) {
  std::string complaints;
  for (const scenario::Complaint& complaint : Parsed(text).complaints) complaints += complaint.Text();
  return complaints;
}

/// The first complaint without the source line: "LINE:COLUMN: MESSAGE"; "" when the scenario is usable.
inline std::string FirstComplaint(const std::string& text) {
  const auto complaints = Parsed(text).complaints;
  if (complaints.empty()) return "";
  return std::to_string(complaints[0].line) + ":" + std::to_string(complaints[0].column) + ": " + complaints[0].message;
}

inline scenario::Scenario Usable(const std::string& text) {
  scenario::ParsedScenario parsed = Parsed(text);
  for (const scenario::Complaint& complaint : parsed.complaints) throw complaint.Text();
  return std::move(parsed.scenario);
}

#endif
