#include "recorder/Scenario.h"

#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "console/CardRecording.h"
#include "console/Minimised.h"
#include "console/commands/Commands.h"
#include "scenario/Suggestion.h"
#include "softcard/LimId.h"

namespace console {
namespace {

struct ScenarioOptions {
  std::string recording;
  std::string scenario;
  bool minimise = false;
  std::optional<std::size_t> line{};
};

/// With all of the recording's requests.
std::string WholeScenario(CardRecording* recording) {
  recorder::ScenarioWriter writer(softcard::kLimIdNames);
  writer.Begin(recording->header());
  if (const std::string others = recording->terms().Others(); !others.empty()) writer.Comment(others);
  if (const std::string card = recording->terms().CardLine(); !card.empty()) writer.Line(card);
  while (const auto entry = recording->Next()) writer.Write(*entry);
  return writer.text();
}

ExitStatus MakeScenario(const ScenarioOptions& options, Console& console) {
  std::string text;
  try {
    CardRecording recording(options.recording);
    text = options.minimise ? MinimisedScenario(&recording, options.line, console.language, console.card)
                            : WholeScenario(&recording);
  } catch (const std::runtime_error& error) {
    TellUnusable(options.recording, error);
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
  CLI::Option* const minimise =
      command->add_flag("--minimise", options->minimise,
                        "Of the first request that does not do as recorded on the software card, else of the first "
                        "that was refused, and of the requests that it takes to show that");
  command->add_option("--line", options->line, "Of the request in this line of the recording instead")
      ->type_name("N")
      ->needs(minimise);
  command->callback([&console, options] { console.status = MakeScenario(*options, console); });
}

}  // namespace console
