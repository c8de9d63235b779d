#include "diagnosis/Sweep.h"

#include <unistd.h>

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "console/Definitions.h"
#include "console/Input.h"
#include "console/Processes.h"
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

/// On a terminal, a line that tells where the sweep is.
class Progress {
 public:
  void Show(unsigned line, const SweepTally& tally) const {
    if (!on_terminal_) return;
    std::cerr << "\r\033[Kline " << line << ", " << tally.requests << " requests, " << tally.refusals << " refusals"
              << std::flush;
  }
  void Hide() const {
    if (on_terminal_) std::cerr << "\r\033[K" << std::flush;
  }

 private:
  const bool on_terminal_ = isatty(STDERR_FILENO) != 0;
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
  const Progress progress;
  SweepTally tally;
  constexpr unsigned kMostSeconds = 60;  // no request takes as long
  Processes processes(kMostSeconds);
  diagnosis::Sweep(*scenario, console.card, console.ledger, {options.pairs, options.codes == "all"}, processes,
                   [&](const diagnosis::SweptRequest& request) {
                     tally.Add(request);
                     progress.Hide();
                     printer->Swept(request);
                     progress.Show(request.line, tally);
                   });
  progress.Hide();
  printer->Ended(scenario->file, tally);
  const bool harmless = tally.leave + tally.fail_again + tally.cannot_be_destroyed + tally.crash == 0;
  return Flushed(harmless ? kAllHold : kSomeFailed);
}

}  // namespace

void AddSweep(CLI::App& app, Console& console) {
  CLI::App* const sweep =
      app.add_subcommand("sweep", "Refuses each platform call of each request in turn and tells what becomes of it");
  const auto options = std::make_shared<SweepRequest>();
  sweep->add_option("FILE", options->path, "The scenario, - for standard input")->required()->type_name("");
  sweep->add_option("-D,--define", options->definitions, "NAME=NUMBER: a name that $NAME and $(...) read")
      ->type_name("DEFINITION")
      ->expected(1)
      ->take_all();
  sweep->add_flag("--pairs", options->pairs, "Refuse two calls of a request as well");
  sweep->add_option("--codes", options->codes, "one: the plain failure; all: every class of result")
      ->check(CLI::IsMember({"one", "all"}))
      ->capture_default_str();
  sweep->add_flag("--json", options->json, "Print a JSON object a line, for programs");
  sweep->callback([&console, options] { console.status = Sweep(*options, console); });
}

}  // namespace console
