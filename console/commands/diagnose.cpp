#include <unistd.h>

#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "console/LogFile.h"
#include "console/LogPrinters.h"
#include "console/commands/Commands.h"

namespace console {
namespace {

struct DiagnoseOptions {
  std::string path;
  bool all = false;
  bool json = false;
};

ExitStatus Diagnose(const DiagnoseOptions& options, Console& console) try {
  if (options.path == "-" && isatty(STDIN_FILENO)) {
    std::cerr << "softcard: reading a log from the terminal; Ctrl-D ends it\n";
  }
  LogFile file(options.path);
  const std::string name = options.path == "-" ? "standard input" : options.path;
  std::unique_ptr<LogPrinter> printer;
  if (options.json) {
    printer = std::make_unique<LogJson>(std::cout, name, options.all);
  } else {
    printer = std::make_unique<LogText>(std::cout, name, options.all);
  }
  LogTally tally;
  const diagnosis::LogKnowledge knowledge(console.language, console.card);
  diagnosis::LogDiagnosis diagnosis(knowledge, [&](const diagnosis::LogRequest& request) {
    tally.Add(request);
    printer->Found(request);
  });
  for (std::string_view line; file.Next(line);) diagnosis.Take(line);
  diagnosis.End();
  tally.lines = diagnosis.lines();
  tally.module_lines = diagnosis.module_lines();
  tally.stray = diagnosis.stray_lines();
  tally.too_long = file.too_long();
  printer->Ended(tally);
  return Flushed(tally.failed + tally.unexplained == 0 ? kAllHold : kSomeFailed);
} catch (const std::runtime_error& error) {
  std::cerr << "softcard: " << error.what() << '\n';
  return kUnusable;
}

}  // namespace

void AddDiagnose(CLI::App& app, Console& console) {
  CLI::App* const diagnose =
      app.add_subcommand("diagnose", "Tells from a card's log which platform calls were refused and what that left");
  const auto options = std::make_shared<DiagnoseOptions>();
  diagnose->add_option("LOG", options->path, "The log, - for standard input")->required()->type_name("");
  diagnose->add_flag("--all", options->all, "Tell of every request, also of those that may have succeeded");
  diagnose->add_flag("--json", options->json, "Print a JSON object a line, for programs");
  diagnose->callback([&console, options] { console.status = Diagnose(*options, console); });
}

}  // namespace console
