#include <iostream>
#include <memory>
#include <string>

#include "console/Input.h"
#include "console/commands/Commands.h"

namespace console {

void AddCheck(CLI::App& app, Console& console) {
  CLI::App* const check = app.add_subcommand("check", "Tells whether a scenario is usable, without running it");
  const auto path = std::make_shared<std::string>();
  check->add_option("FILE", *path, "The scenario, - for standard input")->required()->type_name("");
  check->callback([&console, path] {
    const auto scenario = Load(console.language, *path);
    if (scenario) std::cout << scenario->file << " is usable\n";
    console.status = scenario ? kAllHold : kUnusable;
  });
}

}  // namespace console
