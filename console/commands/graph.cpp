#include "diagnosis/Graph.h"

#include <iostream>
#include <memory>
#include <string>

#include "console/Graphviz.h"
#include "console/Input.h"
#include "console/Nobody.h"
#include "console/commands/Commands.h"
#include "scenario/Run.h"
#include "scenario/Suggestion.h"

namespace console {
namespace {

struct GraphOptions {
  std::string path;
  std::string output;
  unsigned destination = 0;
  bool one = false;
  unsigned until = 0;
};

ExitStatus Graph(const GraphOptions& options, Console& console) {
  if (!IsPicture(options.output)) {
    std::cerr << "softcard: " << scenario::Quoted(options.output) << " is no picture; name a file .svg, .png or .dot\n";
    return kUnusable;
  }
  auto scenario = Load(console.language, options.path);
  if (!scenario) return kUnusable;
  CutAfter(options.until, *scenario);
  scenario->watchers.insert(&console.ledger);
  Nobody nobody;
  scenario::RunScenario(*scenario, console.card, {}, nobody);
  const auto findings = diagnosis::Audit(console.card, console.ledger);
  const auto destination = options.one ? std::optional(options.destination) : std::nullopt;
  WritePicture(options.output, diagnosis::Dot(console.card, console.ledger, findings, destination));
  if (console.card.RowCount("destinations") == 0) {
    std::cerr << "softcard: the card has no destination left then; --until LINE draws it as it was\n";
  }
  return kAllHold;
}

}  // namespace

void AddGraph(CLI::App& app, Console& console) {
  CLI::App* const graph = app.add_subcommand("graph", "Runs a scenario and draws the card, findings in red");
  const auto options = std::make_shared<GraphOptions>();
  graph->add_option("FILE", options->path, "The scenario, - for standard input")->required()->type_name("");
  CLI::Option* const one =
      graph->add_option("ID", options->destination, "A destination, which is drawn alone")->type_name("");
  graph->add_option("-o,--output", options->output, "A file .svg, .png or .dot")->required()->type_name("PICTURE");
  graph->add_option("--until", options->until, "Draw the card as it is after this line")->type_name("LINE");
  graph->callback([&console, options, one] {
    options->one = one->count() > 0;
    console.status = Graph(*options, console);
  });
}

}  // namespace console
