#include "scenario/Run.h"

#include "scenario/Runner.h"

namespace scenario {

std::string Step::Text() const {
  std::string text;
  Substitute({source, 0}, rounds, text);
  return text;
}

Tally RunScenario(const Scenario& scenario, softcard::Card& card, const Options& options, Observer& observer) {
  Runner runner(card, scenario.card, options);
  if (!scenario.starts_itself) runner.Start(scenario, observer);
  runner.Do(scenario, observer);
  return runner.End(scenario, observer);
}

}  // namespace scenario
