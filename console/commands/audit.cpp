#include "diagnosis/Audit.h"

#include <deque>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "calls/Json.h"
#include "console/Input.h"
#include "console/Nobody.h"
#include "console/commands/Commands.h"
#include "scenario/Run.h"
#include "scenario/Suggestion.h"

namespace console {
namespace {

void PrintFinding(const diagnosis::Finding& finding) {
  std::cout << "  " << finding.object << ": " << finding.problem << "\n    left by:   " << finding.cause
            << "\n    a packet:  " << finding.packet << "\n    clean up:  " << finding.remedy << '\n';
}

using Findings = std::vector<diagnosis::Finding>;

void PrintText(const std::string& file, const Findings& findings) {
  std::cout << scenario::Printable(file) << ": "
            << (findings.empty() ? "clean" : std::to_string(findings.size()) + " finding")
            << (findings.size() > 1 ? "s\n" : "\n");
  for (const diagnosis::Finding& finding : findings) PrintFinding(finding);
}

/// As docs/audit-1.schema.json describes it.
void PrintJson(const std::string& file, const Findings& findings) {
  std::string rows;
  for (const softcard::Row& row : diagnosis::ToRows(findings)) rows += (rows.empty() ? "" : ", ") + softcard::Json(row);
  std::cout << "{\"version\": 1, \"file\": " << calls::JsonString(file) << ", \"findings\": [" << rows << "]}\n";
}

ExitStatus Audit(const std::vector<std::string>& paths, bool json, Console& console) {
  // All are read first: an unusable one among them means that nothing is run.
  std::deque<scenario::Scenario> scenarios;
  const auto named = Scenarios(paths);
  if (!named) return kUnusable;
  for (const std::string& path : *named) {
    auto scenario = Load(console.language, path);
    if (!scenario) return kUnusable;
    scenario->watchers.insert(&console.ledger);
    scenarios.push_back(*std::move(scenario));
  }
  ExitStatus status = kAllHold;
  for (const scenario::Scenario& scenario : scenarios) {
    Nobody nobody;
    scenario::RunScenario(scenario, console.card, {}, nobody);
    const auto findings = diagnosis::Audit(console.card, console.ledger);
    (json ? PrintJson : PrintText)(scenario.file, findings);
    if (!findings.empty()) status = kSomeFailed;
  }
  return Flushed(status);
}

}  // namespace

void AddAudit(CLI::App& app, Console& console) {
  CLI::App* const audit = app.add_subcommand("audit", "Runs scenarios and tells what they leave that does not fit");
  const auto paths = std::make_shared<std::vector<std::string>>();
  audit->add_option("FILE", *paths, "Scenarios, or directories of them; - for standard input")
      ->required()
      ->type_name("");
  const auto json = std::make_shared<bool>(false);
  audit->add_flag("--json", *json, "Print a JSON object for each scenario, for programs");
  audit->callback([&console, paths, json] { console.status = Audit(*paths, *json, console); });
}

}  // namespace console
