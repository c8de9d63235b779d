#include "scenario/Run.h"

#include <utility>
#include <variant>

#include "scenario/Failure.h"
#include "scenario/LineReader.h"
#include "scenario/Structure.h"
#include "scenario/WaitingFaults.h"

namespace scenario {
namespace {

const Failure kClientsWentOn = {"update clients made more than " + std::to_string(Performer::kMostClientRequests) +
                                " requests inside this one"};

const SourceLine kBeforeTheFirst{};

/// Does each statement in its turn.
class Runner {
 public:
  Runner(const Scenario& scenario, softcard::Card& card, const Options& options, Observer& observer)
      : scenario_(scenario),
        strict_(options.strict),
        afterwards_(options.afterwards),
        observer_(observer),
        recorded_(card.log(), options.accesses ? Recording::kAll : Recording::kCalls),
        performer_(card),
        run_{card, performer_},
        reader_(*scenario.language, scenario.card),
        rounds_(scenario.definitions) {
    card.Reset(scenario.card);
  }

  Tally DoAll() {
    if (!scenario_.starts_itself) Tell({&kBeforeTheFirst, {}}, Kind::kStart, performer_.Start());
    Do(scenario_.lines);
    EndRequest();
    for (const auto& [place, failure] : faults_.NotHappened(run_.card.faults())) {
      Tell(place, Kind::kPlan, Failed(failure));
    }
    for (Observer* watcher : scenario_.watchers) watcher->Ended(scenario_.file, tally_);
    observer_.Ended(scenario_.file, tally_);
    if (afterwards_) afterwards_(run_);
    return tally_;
  }

 private:
  void Do(const std::vector<SourceLine>& lines) {
    for (const SourceLine& line : lines) {
      if (line.kind == Kind::kLoop) {
        DoLoop(line);
      } else if (line.kind != Kind::kCard) {
        Do(line);
      }
    }
  }

  void DoLoop(const SourceLine& line) {
    const Loop loop = reader_.ReadLoop(line, rounds_);
    for (std::int64_t value = loop.first; value <= loop.last; ++value) {
      rounds_.emplace_back(loop.counter, value);
      Do(line.body);
      rounds_.pop_back();
    }
  }

  void Do(const SourceLine& line) {
    const ReadStatement& statement = reader_.Read(line, rounds_);
    if (statement.about == Expectation::About::kResult) result_is_expected_ = true;
    const Kind kind = statement.kind;
    Content content = statement.action(run_);
    if (std::holds_alternative<Trace>(content)) EndRequest();
    if (const auto* fault = std::get_if<PlannedFault>(&content)) {
      faults_.Add(*fault, {&line, rounds_}, run_.card.faults());
    }
    Tell({&line, rounds_}, kind, std::move(content));
  }

  /// Nothing follows that could expect its result.
  void EndRequest() {
    const RequestResult& result = run_.last.result;
    const bool good = result.kind == RequestResult::Kind::kNone ||
                      (result.kind == RequestResult::Kind::kNumber && result.number == 0);
    if (strict_ && !good && !result_is_expected_) {
      Tell(Place(request_), Kind::kRequest,
           Failed(*Unless(false, "0, as no line expects another result", {result.Text()})));
    }
    result_is_expected_ = false;
  }

  static Checked Failed(const Failure& failure) { return {failure}; }

  void Tell(const Place& place, Kind kind, Content content) {
    Count(place, kind, content);
    if (auto* checked = std::get_if<Checked>(&content);
        kind == Kind::kExpectation && checked != nullptr && checked->failure) {
      checked->request_line = request_.line->number;
      checked->request = StepAt(request_, kind, content).Text();
    }
    const Step step = StepAt(place, kind, content);
    for (Observer* watcher : scenario_.watchers) watcher->Took(step);
    observer_.Took(step);
    if (auto* trace = std::get_if<Trace>(&content)) {
      run_.last = std::move(*trace);
      request_ = place;
      if (run_.last.clients_went_on) Tell(Place(place), Kind::kRequest, Failed(kClientsWentOn));
    }
  }

  Step StepAt(const Place& place, Kind kind, const Content& content) const {
    const SourceLine& line = *place.line;
    return {
        line.file != nullptr ? *line.file : scenario_.file, line.number, place.rounds, line.statement, kind, content};
  }

  void Count(const Place& place, Kind kind, const Content& content) {
    if (const auto* checked = std::get_if<Checked>(&content)) {
      if (kind == Kind::kExpectation) ++tally_.expectations;
      if (checked->failure) ++tally_.failed;
    } else if (place.line->number > 0 && (kind == Kind::kStart || kind == Kind::kRequest || kind == Kind::kClient)) {
      ++tally_.requests;
    }
  }

  using Recording = softcard::CallLog::Recording;

  const Scenario& scenario_;
  const bool strict_;
  const std::function<void(Run&)> afterwards_;
  Observer& observer_;
  const softcard::Record recorded_;
  Performer performer_;
  Run run_;
  LineReader reader_;
  Counters rounds_;
  Tally tally_;
  WaitingFaults faults_;
  Place request_{&kBeforeTheFirst, {}};  ///< of the last request or packet
  bool result_is_expected_ = false;
};

}  // namespace

std::string Step::Text() const {
  std::string text;
  Substitute({source, 0}, rounds, text);
  return text;
}

Tally RunScenario(const Scenario& scenario, softcard::Card& card, const Options& options, Observer& observer) {
  return Runner(scenario, card, options, observer).DoAll();
}

}  // namespace scenario
