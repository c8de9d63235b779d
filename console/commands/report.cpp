#include "diagnosis/Report.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "console/Definitions.h"
#include "console/Graphviz.h"
#include "console/Input.h"
#include "console/Nobody.h"
#include "console/ReportPage.h"
#include "console/SweepPrinters.h"
#include "console/commands/Commands.h"
#include "diagnosis/Graph.h"
#include "diagnosis/WholeFile.h"
#include "scenario/Run.h"
#include "scenario/Suggestion.h"

namespace console {
namespace {

struct ReportOptions {
  std::string path;
  std::string output;
  std::vector<std::string> definitions;
  unsigned until = 0;
  bool no_sweep = false;
};

/// What could only be found out after a sweep of minutes is tried ahead of it.
bool CanBeWritten(const std::string& output) {
  const std::filesystem::path path(output);
  if (path.extension() != ".html") {
    std::cerr << "softcard: " << scenario::Quoted(output) << " is no page; name a file .html\n";
    return false;
  }
  const auto folder = std::filesystem::absolute(path).parent_path();
  if (access(folder.c_str(), W_OK) != 0) {
    std::cerr << "softcard: cannot write " << scenario::Printable(output) << ": " << std::strerror(errno)
              << "; name a file in a folder that exists and may be written\n";
    return false;
  }
  Drawn("svg", "digraph {}");
  return true;
}

ExitStatus Report(const ReportOptions& options, Console& console) {
  const auto definitions = ReadDefinitions(options.definitions);
  if (!definitions || !CanBeWritten(options.output)) return kUnusable;
  auto scenario = Load(console.language, options.path, *definitions);
  if (!scenario) return kUnusable;
  CutAfter(options.until, *scenario);
  scenario->watchers.insert(&console.ledger);

  ReportPage page;
  page.scenario = scenario->file;
  page.until = options.until;
  const auto describe = [&](scenario::Run& run) {
    const auto findings = diagnosis::Audit(run.card, console.ledger);
    page.picture = Drawn("svg", diagnosis::Dot(run.card, console.ledger, findings, std::nullopt));
    page.card = diagnosis::ReportJson(run, console.language, console.ledger, findings);
  };
  if (options.no_sweep) {
    Nobody nobody;
    scenario::Options run;
    run.afterwards = describe;
    scenario::RunScenario(*scenario, console.card, run, nobody);
  } else {
    SweepReport sweep;
    diagnosis::SweepOptions refusals;
    refusals.afterwards = describe;
    SweepWithProgress(*scenario, console.card, console.ledger, refusals, sweep);
    page.sweep = sweep.Json();
  }
  diagnosis::WriteWhole(options.output, page.Html());
  if (console.card.RowCount("destinations") == 0) {
    std::cerr << "softcard: the card has no destination left then; --until LINE tells of it as it was\n";
  }
  return kAllHold;
}

}  // namespace

void AddReport(CLI::App& app, Console& console) {
  CLI::App* const report = app.add_subcommand("report", "Runs a scenario and writes a page of all that is known of it");
  const auto options = std::make_shared<ReportOptions>();
  report->add_option("FILE", options->path, "The scenario, - for standard input")->required()->type_name("");
  report->add_option("-o,--output", options->output, "A file .html")->required()->type_name("PAGE");
  AddDefinitions(*report, options->definitions);
  report->add_option("--until", options->until, "Tell of the card as it is after this line")->type_name("LINE");
  report->add_flag("--no-sweep", options->no_sweep, "Leave out what becomes of each request when a call is refused");
  report->callback([&console, options] { console.status = Report(*options, console); });
}

}  // namespace console
