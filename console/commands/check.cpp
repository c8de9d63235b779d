#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "console/Definitions.h"
#include "console/Input.h"
#include "console/commands/Commands.h"
#include "scenario/Suggestion.h"

namespace console {

void AddCheck(CLI::App& app, Console& console) {
  CLI::App* const check = app.add_subcommand("check", "Tells whether a scenario is usable, without running it");
  const auto path = std::make_shared<std::string>();
  const auto definitions = std::make_shared<std::vector<std::string>>();
  check->add_option("FILE", *path, "The scenario, - for standard input")->required()->type_name("");
  AddDefinitions(*check, *definitions);
  check->callback([&console, path, definitions] {
    console.status = kUnusable;
    const auto defined = ReadDefinitions(*definitions);
    if (!defined) return;
    const auto scenario = Load(console.language, *path, *defined);
    if (scenario) std::cout << scenario::Printable(scenario->file) << " is usable\n";
    console.status = scenario ? kAllHold : kUnusable;
  });
}

}  // namespace console
