#include "scenario/Run.h"

#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

#include "console/Input.h"
#include "console/TextPrinter.h"
#include "console/commands/Commands.h"

namespace console {
namespace {

struct RunOptions {
  std::string path;
  bool quiet = false;
  bool summary = false;
  bool all_calls = false;
  std::string colour = "auto";
};

bool WantsColour(const std::string& choice) {
  if (choice != "auto") return choice == "always";
  const char* const no_colour = std::getenv("NO_COLOR");
  return isatty(STDOUT_FILENO) && (no_colour == nullptr || *no_colour == '\0');
}

ExitStatus Run(const RunOptions& options, Console& console) {
  const auto scenario = Load(console.language, options.path);
  if (!scenario) return kUnusable;
  const Detail detail = options.quiet ? Detail::kFailures : options.summary ? Detail::kRequests : Detail::kCalls;
  TextPrinter printer(std::cout, detail, WantsColour(options.colour));
  const auto accesses = options.all_calls ? scenario::Accesses::kRecorded : scenario::Accesses::kLeftOut;
  const scenario::Tally tally = scenario::RunScenario(*scenario, console.card, accesses, printer);
  if (!std::cout.flush()) {
    std::cerr << "softcard: cannot write all of the output; is there room where it goes?\n";
    return kUnusable;
  }
  return tally.failed == 0 ? kAllHold : kSomeFailed;
}

}  // namespace

void AddRun(CLI::App& app, Console& console) {
  CLI::App* const run = app.add_subcommand("run", "Runs a scenario and checks its expectations");
  const auto options = std::make_shared<RunOptions>();
  run->add_option("FILE", options->path, "The scenario, - for standard input")->required()->type_name("");
  CLI::Option* const quiet = run->add_flag("-q,--quiet", options->quiet, "Print failures and the last line only");
  run->add_flag("-s,--summary", options->summary, "Print a line for each request, or for several that are alike")
      ->excludes(quiet);
  run->add_flag("-a,--all-calls", options->all_calls, "Print what the module looks at, too");
  run->add_option("--color", options->colour, "auto: colours on a terminal, unless NO_COLOR is set")
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->capture_default_str();
  run->callback([&console, options] { console.status = Run(*options, console); });
}

}  // namespace console
