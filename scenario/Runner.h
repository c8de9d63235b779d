#ifndef SCENARIO_RUNNER_H
#define SCENARIO_RUNNER_H

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "scenario/LineReader.h"
#include "scenario/Performer.h"
#include "scenario/Run.h"
#include "scenario/Scenario.h"
#include "scenario/WaitingFaults.h"
#include "softcard/CallLog.h"

namespace scenario {

/// Does the statements of a scenario, and of others that follow it, each in its turn.
class Runner {
 public:
  /// Empties the card.
  Runner(softcard::Card& card, const softcard::CardDescription& description, const Options& options);

  /// Starts the module.
  void Start(const Scenario& scenario, Observer& observer);
  /// Throws what an observer or a statement throws that writes a file.
  void Do(const Scenario& scenario, Observer& observer);
  /// Nothing follows: what has not happened is told. All scenarios are to live until then, unless the run is endless.
  Tally End(const Scenario& scenario, Observer& observer);

  const Tally& tally() const { return tally_; }
  /// The line of the last request or packet, whose scenario is to live until there is another one.
  const SourceLine* request_line() const { return request_.line; }

 private:
  using Recording = softcard::CallLog::Recording;

  void TellOf(const Scenario& scenario, Observer& observer);
  void Do(const std::vector<SourceLine>& lines);
  void DoLoop(const SourceLine& line);
  void Do(const SourceLine& line);
  void EndRequest();
  void Tell(const Place& place, Kind kind, Content content);
  Step StepAt(const Place& place, Kind kind, const Content& content) const;
  void Count(const Place& place, Kind kind, const Content& content);

  const Options options_;
  const softcard::Record recorded_;
  Performer performer_;
  Run run_;
  Past past_;
  const Scenario* scenario_ = nullptr;
  Observer* observer_ = nullptr;
  std::optional<LineReader> reader_;
  Counters rounds_;
  Tally tally_;
  WaitingFaults faults_;
  Place request_;  ///< of the last request or packet
  bool result_is_expected_ = false;
};

}  // namespace scenario

#endif
