// For targets without the libraries of a card that lives and of the shell.
#include <iostream>
#include <string>

#include "console/commands/Commands.h"

namespace console {
namespace {

void AddMissing(CLI::App& app, Console& console, const std::string& name, const std::string& help) {
  CLI::App* const missing = app.add_subcommand(name, help);
  missing->allow_extras();
  missing->callback([&console, name] {
    std::cerr << "softcard: this build has no " << name << ": it has none of the libraries that it takes\n";
    console.status = kUnusable;
  });
}

}  // namespace

void AddShell(CLI::App& app, Console& console) { AddMissing(app, console, "shell", kShellHelp); }

void AddServe(CLI::App& app, Console& console) { AddMissing(app, console, "serve", kServeHelp); }

void AddCtl(CLI::App& app, Console& console) { AddMissing(app, console, "ctl", kCtlHelp); }

}  // namespace console
