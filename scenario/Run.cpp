#include "scenario/Run.h"

#include <utility>
#include <variant>

#include "scenario/LineReader.h"
#include "scenario/Structure.h"

namespace scenario {
namespace {

/// Does each statement in its turn.
class Runner {
 public:
  Runner(const Scenario& scenario, softcard::Card& card, Accesses accesses, Observer& observer)
      : scenario_(scenario),
        observer_(observer),
        recorded_(card.log(), accesses == Accesses::kRecorded ? Recording::kAll : Recording::kCalls),
        performer_(card),
        run_{card, performer_},
        reader_(*scenario.language, scenario.card) {
    card.Reset(scenario.card);
  }

  Tally DoAll() {
    static const SourceLine kBeforeTheFirst{};
    if (!scenario_.starts_itself) Tell(kBeforeTheFirst, Kind::kStart, performer_.Start());
    Do(scenario_.lines);
    for (Observer* watcher : scenario_.language->watchers()) watcher->Ended(scenario_.file, tally_);
    observer_.Ended(scenario_.file, tally_);
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
    Tell(line, statement.kind, statement.action(run_));
  }

  void Tell(const SourceLine& line, Kind kind, Content content) {
    Count(line, kind, content);
    const Step step{scenario_.file, line.number, rounds_, line.statement, kind, content};
    for (Observer* watcher : scenario_.language->watchers()) watcher->Took(step);
    observer_.Took(step);
    if (auto* trace = std::get_if<Trace>(&content)) run_.last = std::move(*trace);
  }

  void Count(const SourceLine& line, Kind kind, const Content& content) {
    if (const auto* checked = std::get_if<Checked>(&content)) {
      ++tally_.expectations;
      if (checked->failure) ++tally_.failed;
    } else if (line.number > 0 && (kind == Kind::kStart || kind == Kind::kRequest || kind == Kind::kClient)) {
      ++tally_.requests;
    }
  }

  using Recording = softcard::CallLog::Recording;

  const Scenario& scenario_;
  Observer& observer_;
  const softcard::Record recorded_;
  Performer performer_;
  Run run_;
  LineReader reader_;
  Counters rounds_;
  Tally tally_;
};

}  // namespace

std::string Step::Text() const {
  std::string text;
  Substitute({source, 0}, rounds, text);
  return text;
}

Tally RunScenario(const Scenario& scenario, softcard::Card& card, Accesses accesses, Observer& observer) {
  return Runner(scenario, card, accesses, observer).DoAll();
}

}  // namespace scenario
