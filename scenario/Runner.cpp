#include "scenario/Runner.h"

#include <utility>
#include <variant>

#include "scenario/Failure.h"
#include "scenario/Structure.h"

namespace scenario {
namespace {

const Failure kClientsWentOn = {"update clients made more than " + std::to_string(Performer::kMostClientRequests) +
                                " requests inside this one"};

const SourceLine kBeforeTheFirst{};

Checked Failed(const Failure& failure) { return {failure}; }

}  // namespace

Runner::Runner(softcard::Card& card, const softcard::CardDescription& description, const Options& options)
    : options_(options),
      recorded_(card.log(), options.accesses ? Recording::kAll : Recording::kCalls),
      performer_(card),
      run_{card, performer_},
      request_{&kBeforeTheFirst} {
  past_.card = description;
  card.Reset(description);
}

void Runner::Start(const Scenario& scenario, Observer& observer) {
  TellOf(scenario, observer);
  Tell({&kBeforeTheFirst}, Kind::kStart, performer_.Start());
}

void Runner::Do(const Scenario& scenario, Observer& observer) {
  TellOf(scenario, observer);
  Do(scenario.lines);
}

Tally Runner::End(const Scenario& scenario, Observer& observer) {
  TellOf(scenario, observer);
  EndRequest();
  for (const auto& [place, failure] : faults_.NotHappened(run_.card.faults())) {
    Tell(place, Kind::kPlan, Failed(failure));
  }
  for (Observer* watcher : scenario.watchers) watcher->Ended(scenario.file, tally_);
  observer.Ended(scenario.file, tally_);
  if (options_.afterwards) options_.afterwards(run_);
  return tally_;
}

void Runner::TellOf(const Scenario& scenario, Observer& observer) {
  scenario_ = &scenario;
  observer_ = &observer;
  reader_.emplace(*scenario.language, past_);
  rounds_ = scenario.definitions;
}

void Runner::Do(const std::vector<SourceLine>& lines) {
  for (const SourceLine& line : lines) {
    if (line.kind == Kind::kLoop) {
      DoLoop(line);
    } else if (line.kind != Kind::kCard) {
      Do(line);
    }
  }
}

void Runner::DoLoop(const SourceLine& line) {
  const Loop loop = reader_->ReadLoop(line, rounds_);
  for (std::int64_t value = loop.first; value <= loop.last; ++value) {
    rounds_.emplace_back(loop.counter, value);
    Do(line.body);
    rounds_.pop_back();
  }
}

void Runner::Do(const SourceLine& line) {
  const ReadStatement& statement = reader_->Read(line, rounds_);
  if (statement.about == Expectation::About::kResult) result_is_expected_ = true;
  const Kind kind = statement.kind;
  Content content = statement.action(run_);
  if (std::holds_alternative<Trace>(content)) EndRequest();
  if (const auto* fault = std::get_if<PlannedFault>(&content); fault != nullptr && !options_.endless) {
    faults_.Add(*fault, {&line, rounds_}, run_.card.faults());
  }
  Tell({&line, rounds_}, kind, std::move(content));
}

/// Nothing follows that could expect its result.
void Runner::EndRequest() {
  const RequestResult& result = run_.last.result;
  const bool good =
      result.kind == RequestResult::Kind::kNone || (result.kind == RequestResult::Kind::kNumber && result.number == 0);
  if (options_.strict && !good && !result_is_expected_) {
    Tell(Place(request_), Kind::kRequest,
         Failed(*Unless(false, "0, as no line expects another result", {result.Text()})));
  }
  result_is_expected_ = false;
}

void Runner::Tell(const Place& place, Kind kind, Content content) {
  Count(place, kind, content);
  if (auto* checked = std::get_if<Checked>(&content);
      kind == Kind::kExpectation && checked != nullptr && checked->failure) {
    checked->request_line = request_.line->number;
    checked->request = StepAt(request_, kind, content).Text();
  }
  const Step step = StepAt(place, kind, content);
  for (Observer* watcher : scenario_->watchers) watcher->Took(step);
  observer_->Took(step);
  if (auto* trace = std::get_if<Trace>(&content)) {
    run_.last = std::move(*trace);
    request_ = place;
    if (run_.last.clients_went_on) Tell(Place(place), Kind::kRequest, Failed(kClientsWentOn));
  }
}

Step Runner::StepAt(const Place& place, Kind kind, const Content& content) const {
  const SourceLine& line = *place.line;
  return {
      line.file != nullptr ? *line.file : scenario_->file, line.number, place.rounds, line.statement, kind, content};
}

void Runner::Count(const Place& place, Kind kind, const Content& content) {
  if (const auto* checked = std::get_if<Checked>(&content)) {
    if (kind == Kind::kExpectation) ++tally_.expectations;
    if (checked->failure) ++tally_.failed;
  } else if (place.line->number > 0 && (kind == Kind::kStart || kind == Kind::kRequest || kind == Kind::kClient)) {
    ++tally_.requests;
  }
}

}  // namespace scenario
