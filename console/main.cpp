#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>

#include "console/commands/Commands.h"
#include "diagnosis/Statements.h"

int main(int argc, char** argv) try {
  std::ios::sync_with_stdio(false);
  CLI::App app("Runs the encapsulation module on a line card in software.");
  app.name("softcard");
  app.set_version_flag("--version", "softcard " SOFTCARD_VERSION);
  app.require_subcommand(0, 1);
  app.footer("Exit status: 0 when every expectation holds, 1 when one fails, 2 for anything unusable.");

  scenario::Language language;
  scenario::AddStandard(language);
  diagnosis::Ledger ledger;
  diagnosis::AddAudit(language, ledger);
  console::Console console{softcard::Card::Get(), language, ledger};
  console::AddRun(app, console);
  console::AddCheck(app, console);
  console::AddAudit(app, console);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? console::kAllHold : console::kUnusable;
  }
  if (!app.get_subcommands().empty()) return console.status;
  std::cerr << app.help();
  return console::kUnusable;
} catch (const std::exception& exception) {
  std::cerr << "softcard: " << exception.what() << '\n';
  return console::kUnusable;
}
