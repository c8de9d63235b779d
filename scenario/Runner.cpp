#include "scenario/Runner.h"

#include <algorithm>

#include "scenario/PacketWay.h"
#include "scenario/Performer.h"
#include "softcard/Card.h"

namespace scenario {
namespace {

std::string Counted(unsigned long count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

/// Does each statement in its turn.
class Runner {
 public:
  Runner(const Scenario& scenario, const RunOptions& options, std::ostream& out)
      : scenario_(scenario), options_(options), printer_(out, options.detail, options.colour) {
    card_.Reset(scenario.card);
  }

  Tally Run() {
    if (!StartsItself()) {
      Request start;
      start.operation = Operation::kStart;
      last_ = performer_.Perform(start);
      printer_.Started(last_);
    }
    for (const Statement& statement : scenario_.statements) {
      statement_ = &statement;
      std::visit([this](const auto& action) { Do(action); }, statement.action);
    }
    printer_.Summed(scenario_.file + ": " + Counted(tally_.requests, "request") + ", " +
                        Counted(tally_.expectations, "expectation") + ", " + std::to_string(tally_.failed) + " failed",
                    tally_.failed == 0);
    return tally_;
  }

 private:
  bool StartsItself() const {
    return std::any_of(scenario_.statements.begin(), scenario_.statements.end(), [](const Statement& statement) {
      const auto* request = std::get_if<Request>(&statement.action);
      return request != nullptr && request->operation == Operation::kStart;
    });
  }

  void Do(const Request& request) { Perform(request); }
  void Do(const Client& client) { Perform(client); }

  template <typename Action>
  void Perform(const Action& action) {
    ++tally_.requests;
    last_ = performer_.Perform(action);
    printer_.Requested(statement_->text, last_);
  }

  void Do(const Fault& fault) {
    softcard::FaultPlan& faults = card_.faults();
    switch (fault.when) {
      case Fault::When::kNth: faults.FailNth(fault.function, fault.number, fault.result); break;
      case Fault::When::kEvery: faults.FailEvery(fault.function, fault.result); break;
      case Fault::When::kNumbered: faults.FailCallNumber(fault.number, fault.result); break;
    }
    printer_.Planned(statement_->text);
  }

  void Do(const ClearFaults&) {
    card_.faults().Clear();
    printer_.Planned(statement_->text);
  }

  void Do(const Send& send) {
    last_ = {};
    for (const std::string& step : PacketWay(send)) last_.trace.push_back({TraceLine::Kind::kPacket, step});
    printer_.Sent(statement_->text, last_);
  }

  void Do(const Show& show) {
    printer_.Showing(statement_->text);
    for (const std::string& table : show.tables) printer_.Shown(table);
  }

  void Do(const Say& say) { printer_.Said(say.text); }

  void Do(const Expectation& expectation) {
    ++tally_.expectations;
    if (const auto failure = Check(expectation, last_)) {
      ++tally_.failed;
      printer_.Failed(scenario_.file + ":" + std::to_string(statement_->line), statement_->text, *failure);
    } else {
      printer_.Held(statement_->text);
    }
  }

  const Scenario& scenario_;
  const RunOptions options_;
  softcard::Card& card_ = softcard::Card::Get();
  const softcard::Record record_{
      card_.log(), options_.accesses ? softcard::CallLog::Recording::kAll : softcard::CallLog::Recording::kCalls};
  Performer performer_;
  Printer printer_;
  Tally tally_;
  Record last_;
  const Statement* statement_ = nullptr;
};

}  // namespace

Tally Run(const Scenario& scenario, const RunOptions& options, std::ostream& out) {
  return Runner(scenario, options, out).Run();
}

}  // namespace scenario
