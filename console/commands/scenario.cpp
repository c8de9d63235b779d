#include "recorder/Scenario.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>

#include "console/commands/Commands.h"
#include "scenario/Suggestion.h"
#include "softcard/LimId.h"

namespace console {
namespace {

struct ScenarioOptions {
  std::string recording;
  std::string scenario;
};

ExitStatus MakeScenario(const ScenarioOptions& options) {
  const std::string name = scenario::Printable(options.recording);
  std::ifstream in(options.recording, std::ios::binary);
  if (!in) {
    std::cerr << "softcard: cannot read " << name << ": " << std::strerror(errno) << '\n';
    return kUnusable;
  }
  std::string text;
  try {
    recorder::Reader reader(in);
    text = recorder::ToScenario(&reader, softcard::kLimIdNames);
  } catch (const recorder::BadRecording& bad) {
    std::cerr << name << ": " << scenario::Printable(bad.what()) << '\n';
    return kUnusable;
  }
  if (options.scenario.empty()) {
    std::cout << text;
    return kAllHold;
  }
  std::ofstream out(options.scenario, std::ios::binary);
  if (!(out << text).flush()) {
    std::cerr << "softcard: cannot write " << scenario::Printable(options.scenario)
              << "; check the path and the room there\n";
    return kUnusable;
  }
  return kAllHold;
}

}  // namespace

void AddScenario(CLI::App& app, Console& console) {
  CLI::App* const command = app.add_subcommand("scenario", "Makes a scenario of a recording, with its expectations");
  const auto options = std::make_shared<ScenarioOptions>();
  command->add_option("FILE", options->recording, "The recording")->required()->type_name("");
  command->add_option("-o,--output", options->scenario, "The scenario; without it, standard output")->type_name("FILE");
  command->callback([&console, options] { console.status = MakeScenario(*options); });
}

}  // namespace console
