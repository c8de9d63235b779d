#include "diagnosis/Sweep.h"

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "console/Definitions.h"
#include "console/Input.h"
#include "console/SweepPrinters.h"
#include "console/commands/Commands.h"

namespace console {
namespace {

struct SweepRequest {
  std::string path;
  std::vector<std::string> definitions;
  bool pairs = false;
  std::string codes = "one";
  bool json = false;
};

ExitStatus Sweep(const SweepRequest& options, Console& console) {
  const auto definitions = ReadDefinitions(options.definitions);
  if (!definitions) return kUnusable;
  auto scenario = Load(console.language, options.path, *definitions);
  if (!scenario) return kUnusable;
  scenario->watchers.insert(&console.ledger);
  std::unique_ptr<SweepPrinter> printer;
  if (options.json) {
    printer = std::make_unique<SweepJson>(std::cout);
  } else {
    printer = std::make_unique<SweepText>(std::cout);
  }
  const SweepTally tally =
      SweepWithProgress(*scenario, console.card, console.ledger, {options.pairs, options.codes == "all"}, *printer);
  const bool harmless = tally.leave + tally.fail_again + tally.cannot_be_destroyed + tally.crash == 0;
  return Flushed(harmless ? kAllHold : kSomeFailed);
}

}  // namespace

void AddSweep(CLI::App& app, Console& console) {
  CLI::App* const sweep =
      app.add_subcommand("sweep", "Refuses each platform call of each request in turn and tells what becomes of it");
  const auto options = std::make_shared<SweepRequest>();
  sweep->add_option("FILE", options->path, "The scenario, - for standard input")->required()->type_name("");
  AddDefinitions(*sweep, options->definitions);
  sweep->add_flag("--pairs", options->pairs, "Refuse two calls of a request as well");
  sweep->add_option("--codes", options->codes, "one: the plain failure; all: every class of result")
      ->check(CLI::IsMember({"one", "all"}))
      ->capture_default_str();
  sweep->add_flag("--json", options->json, "Print a JSON object a line, for programs");
  sweep->callback([&console, options] { console.status = Sweep(*options, console); });
}

}  // namespace console
