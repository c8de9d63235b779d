#include "scenario/Run.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "console/Captures.h"
#include "console/ChangesPrinter.h"
#include "console/Definitions.h"
#include "console/Input.h"
#include "console/JUnitReport.h"
#include "console/JsonPrinter.h"
#include "console/Processes.h"
#include "console/Recording.h"
#include "console/TextPrinter.h"
#include "console/commands/Commands.h"

namespace console {
namespace {

struct RunOptions {
  std::vector<std::string> paths;
  std::vector<std::string> definitions;
  bool quiet = false;
  bool summary = false;
  bool all_calls = false;
  bool hex = false;
  bool strict = false;
  bool diff = false;
  bool json = false;
  unsigned long max_failures = 20;
  std::string junit;
  std::string pcap;
  std::string recording;
  std::string colour = "auto";
};

/// What became of a file.
struct Outcome {
  int status = kAllHold;
  scenario::Tally tally{};
  std::string suite{};  ///< of the JUnit report

  /// For the process that waits for it.
  std::string Text() const {
    std::ostringstream text;
    text << status << ' ' << tally.requests << ' ' << tally.expectations << ' ' << tally.failed << '\n' << suite;
    return text.str();
  }
};

Outcome ReadOutcome(const std::string& text) {
  Outcome outcome;
  std::istringstream numbers(text);
  numbers >> outcome.status >> outcome.tally.requests >> outcome.tally.expectations >> outcome.tally.failed;
  outcome.suite = text.substr(text.find('\n') + 1);
  return outcome;
}

/// Tells all the same.
class All : public scenario::Observer {
 public:
  explicit All(std::vector<scenario::Observer*> observers) : observers_(std::move(observers)) {}

  void Took(const scenario::Step& step) override {
    for (scenario::Observer* observer : observers_) observer->Took(step);
  }
  void Ended(const std::string& file, const scenario::Tally& tally) override {
    for (scenario::Observer* observer : observers_) observer->Ended(file, tally);
  }

 private:
  const std::vector<scenario::Observer*> observers_;
};

std::unique_ptr<scenario::Observer> Printer(const RunOptions& options) {
  if (options.json) return std::make_unique<JsonPrinter>(std::cout);
  const Detail detail = options.quiet ? Detail::kFailures : options.summary ? Detail::kRequests : Detail::kCalls;
  return std::make_unique<TextPrinter>(
      std::cout, TextPrinter::Options{detail, WantsColour(options.colour), options.max_failures, options.hex});
}

Outcome RunFile(const std::string& path, const scenario::Counters& definitions, const RunOptions& options,
                Console& console) {
  const auto scenario = Load(console.language, path, definitions);
  if (!scenario) return {kUnusable, {}, JUnitReport::ErrorSuite(path, "unusable; softcard check says why")};
  const auto printer = Printer(options);
  JUnitReport report;
  std::vector<scenario::Observer*> observers = {printer.get()};
  auto changes = ChangesPrinter(console.card, std::cout, WantsColour(options.colour));
  if (options.diff) observers.push_back(&changes);
  observers.push_back(&report);
  std::optional<Captures> captures;
  if (!options.pcap.empty()) observers.push_back(&captures.emplace(options.pcap));
  All all(observers);
  const scenario::Tally tally =
      scenario::RunScenario(*scenario, console.card, {options.all_calls, options.strict}, all);
  return {tally.failed == 0 ? kAllHold : kSomeFailed, tally, report.Suite(scenario->file)};
}

/// A process of its own for each, so that what a file's run prints does not depend on those before it.
Outcome RunFiles(const std::vector<std::string>& paths, const scenario::Counters& definitions,
                 const RunOptions& options, Console& console) {
  if (paths.size() == 1) return RunFile(paths[0], definitions, options, console);
  Outcome total;
  unsigned unusable = 0;
  for (const std::string& path : paths) {
    const Ending ending = InItsOwnProcess([&] {
      Outcome outcome = RunFile(path, definitions, options, console);
      outcome.status = Flushed(static_cast<ExitStatus>(outcome.status));
      return outcome.Text();
    });
    if (!ending.crash.empty()) std::cerr << "softcard: " << path << ' ' << ending.crash << '\n';
    const Outcome outcome = ending.crash.empty() ? ReadOutcome(ending.report)
                                                 : Outcome{kUnusable, {}, JUnitReport::ErrorSuite(path, ending.crash)};
    total.status = std::max(total.status, outcome.status);
    total.tally.requests += outcome.tally.requests;
    total.tally.expectations += outcome.tally.expectations;
    total.tally.failed += outcome.tally.failed;
    total.suite += outcome.suite;
    if (outcome.status == kUnusable) ++unusable;
  }
  if (!options.json) {
    std::cout << "total: " << Counted(paths.size(), "file") << ", " << Counted(total.tally.requests, "request") << ", "
              << Counted(total.tally.expectations, "expectation") << ", " << total.tally.failed << " failed, "
              << unusable << " unusable\n";
  }
  return total;
}

ExitStatus Run(const RunOptions& options, Console& console) {
  const auto definitions = ReadDefinitions(options.definitions);
  const auto paths = Scenarios(options.paths);
  if (!definitions || !paths) return kUnusable;
  if (!options.pcap.empty() && paths->size() > 1) {
    std::cerr << "softcard: --pcap takes one scenario, as another would write the same files; these are "
              << paths->size() << '\n';
    return kUnusable;
  }
  if (!options.recording.empty() && paths->size() > 1) {
    std::cerr << "softcard: --record takes one scenario, and these are " << paths->size()
              << "; record each into a file of its own\n";
    return kUnusable;
  }
  if (!options.recording.empty() && !RecordInto(options.recording)) return kUnusable;
  const Outcome outcome = RunFiles(*paths, *definitions, options, console);
  if (!options.junit.empty()) {
    std::ofstream file(options.junit);
    if (!(file << JUnitReport::Report(outcome.suite)).flush()) {
      std::cerr << "softcard: cannot write " << options.junit << "; check the path and the room there\n";
      return kUnusable;
    }
  }
  return static_cast<ExitStatus>(outcome.status);
}

}  // namespace

void AddRun(CLI::App& app, Console& console) {
  CLI::App* const run = app.add_subcommand("run", "Runs scenarios and checks their expectations");
  const auto options = std::make_shared<RunOptions>();
  run->add_option("FILE", options->paths, "A scenario, a directory with *.scn files, or - for standard input")
      ->required()
      ->type_name("");
  AddDefinitions(*run, options->definitions);
  CLI::Option* const quiet = run->add_flag("-q,--quiet", options->quiet, "Print failures and the last line only");
  CLI::Option* const summary =
      run->add_flag("-s,--summary", options->summary, "Print a line for each request, or for several that are alike")
          ->excludes(quiet);
  run->add_flag("-a,--all-calls", options->all_calls, "Print what the module looks at, too");
  run->add_flag("--hex", options->hex, "Print the bytes of frames that leave, too")->excludes(quiet)->excludes(summary);
  CLI::Option* const json = run->add_flag("--json", options->json, "Print a JSON object a line, for programs")
                                ->excludes(quiet)
                                ->excludes(summary);
  run->add_flag("--diff", options->diff, "Print below each request the rows that it took (-) and put (+)")
      ->excludes(quiet)
      ->excludes(summary)
      ->excludes(json);
  run->add_option("--junit", options->junit, "Write a JUnit report as well")->type_name("FILE");
  run->add_option("--pcap", options->pcap, "Write what each port sees into DIR/PORT.pcap")->type_name("DIR");
  run->add_option("--record", options->recording, "Record the module's calls as well; softcard replay reads it")
      ->type_name("FILE");
  run->add_flag("--strict", options->strict, "A request fails that does not return 0, unless its result is expected");
  run->add_option("--max-failures", options->max_failures, "Tell of more failures only how many there are; 0: tell all")
      ->type_name("N")
      ->capture_default_str();
  run->add_option("--color", options->colour, "auto: colours on a terminal, unless NO_COLOR is set")
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->capture_default_str();
  run->callback([&console, options] { console.status = Run(*options, console); });
}

}  // namespace console
