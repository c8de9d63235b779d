#include <iostream>

#include "console/commands/Commands.h"
#include "diagnosis/Statements.h"

namespace console {

Console::Console(softcard::Card& software_card) : card(software_card) {
  scenario::AddStandard(language);
  diagnosis::AddAudit(language, ledger);
  diagnosis::AddDifferences(language, mark);
  diagnosis::AddUsers(language);
  serve::AddStatements(language, living);
  serve::AddRouterStatements(language, living);
}

std::unique_ptr<CLI::App> MakeApp(Console& console) {
  auto app = std::make_unique<CLI::App>("Runs the encapsulation module on a line card in software.");
  app->name("softcard");
  app->set_version_flag("--version", "softcard " SOFTCARD_VERSION);
  app->require_subcommand(0, 1);
  app->footer("Exit status: 0 when every expectation holds, 1 when one fails, 2 for anything unusable.");
  AddRun(*app, console);
  AddCheck(*app, console);
  AddAudit(*app, console);
  AddDiff(*app, console);
  AddGraph(*app, console);
  AddReport(*app, console);
  AddSweep(*app, console);
  AddDiagnose(*app, console);
  AddReplay(*app, console);
  AddScenario(*app, console);
  AddShell(*app, console);
  AddServe(*app, console);
  AddCtl(*app, console);
  return app;
}

ExitStatus Flushed(ExitStatus status) {
  if (std::cout.flush()) return status;
  std::cerr << "softcard: cannot write all of the output; is there room where it goes?\n";
  return kUnusable;
}

}  // namespace console
