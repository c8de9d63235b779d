// For targets without the libraries of a card that lives.
#include <iostream>
#include <string>

#include "console/commands/Commands.h"

namespace console {
namespace {

void AddMissing(CLI::App& app, Console& console, const std::string& name, const std::string& help) {
  CLI::App* const missing = app.add_subcommand(name, help);
  missing->allow_extras();
  missing->callback([&console, name] {
    std::cerr << "softcard: this build has no " << name << ": it has no libpcap\n";
    console.status = kUnusable;
  });
}

}  // namespace

void AddServe(CLI::App& app, Console& console) { AddMissing(app, console, "serve", kServeHelp); }

void AddCtl(CLI::App& app, Console& console) { AddMissing(app, console, "ctl", kCtlHelp); }

}  // namespace console
