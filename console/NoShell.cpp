// For targets without libedit.
#include <iostream>

#include "console/commands/Commands.h"

namespace console {

void AddShell(CLI::App& app, Console& console) {
  CLI::App* const shell = app.add_subcommand("shell", "Takes statements line by line, on a card of its own");
  shell->allow_extras();
  shell->callback([&console] {
    std::cerr << "softcard: this build has no shell, as it has no libedit; use the build for the desk\n";
    console.status = kUnusable;
  });
}

}  // namespace console
