#include "diagnosis/Sweep.h"

#include <algorithm>
#include <deque>
#include <set>
#include <utility>

#include "diagnosis/SweptText.h"
#include "scenario/Values.h"

namespace diagnosis {
namespace {

using Plan = std::vector<RefusedCall>;

bool AreAlike(const Finding& one, const Finding& other) {
  return one.object == other.object && one.problem == other.problem;
}

/// "destroy-mpls 20" for "replace-mpls 20 vlan=10 ..."; empty for what makes nothing that could be destroyed.
std::string DestroyOf(const std::string& request) {
  scenario::Texts texts;
  const auto words = scenario::Tokenize(request, texts);
  const std::size_t dash = words[0].text.find('-');
  const std::string_view verb = words[0].text.substr(0, dash);
  if (words.size() < 2 || (verb != "install" && verb != "replace")) return "";
  return "destroy" + std::string(words[0].text.substr(dash)) + ' ' + std::string(words[1].text);
}

class Sweeper : public scenario::Observer {
 public:
  Sweeper(const scenario::Language& language, softcard::Card& card, const Ledger& ledger, const SweepOptions& options,
          Branches& branches, const std::function<void(const SweptRequest&)>& tell)
      : language_(language), card_(card), ledger_(ledger), options_(options), branches_(branches), tell_(tell) {}

  /// Where the run is about to make its next step, so is every branch that begins here.
  void Took(const scenario::Step& step) override {
    if (in_branch_) return Report(step);
    SweepNext();
  }
  void Ended(const std::string&, const scenario::Tally&) override {
    if (in_branch_) branches_.End(ToText({}));
  }

 private:
  void SweepNext() {
    unhindered_ = {};
    SweptRequest request;
    std::deque<Plan> waiting = {{}};
    std::deque<Plan> under_way;
    while (!waiting.empty() || !under_way.empty()) {
      if (!waiting.empty() && under_way.size() < branches_.most()) {
        under_way.push_back(std::move(waiting.front()));
        waiting.pop_front();
        if (branches_.Begin()) return BeBranch(under_way.back());
        continue;
      }
      const Ending ending = branches_.Next();
      BranchReport report = ReadBranchReport(ending.report);
      report.outcome.crash = ending.crash;
      report.outcome.refused = std::move(under_way.front());
      under_way.pop_front();
      if (report.outcome.refused.empty()) {
        if (report.request.empty() && ending.crash.empty()) return;
        request = {report.file, report.line, report.rounds, report.request, report.outcome, {}};
        unhindered_ = std::move(report.outcome);
        AddPlans({}, report.calls, waiting);
      } else {
        if (options_.pairs && report.outcome.refused.size() == 1) {
          AddPlans(report.outcome.refused, report.calls, waiting);
        }
        request.refusals.push_back(std::move(report.outcome));
      }
    }
    tell_(request);
  }

  /// Plans that go on from one that is known by refusing one more of the calls that came.
  void AddPlans(const Plan& plan, const std::vector<RefusedCall>& calls, std::deque<Plan>& waiting) const {
    for (const RefusedCall& call : calls) {
      if (!plan.empty() && call.number <= plan.back().number) continue;
      for (const int result : ResultsOfRefusal(*call.function, options_.all_codes)) {
        if (result == call.result) continue;
        waiting.push_back(plan);
        waiting.back().push_back({call.number, call.function, result});
      }
    }
  }

  void BeBranch(const Plan& plan) {
    in_branch_ = true;
    refuses_ = !plan.empty();
    for (const RefusedCall& call : plan) card_.faults().FailCallNumber(call.number, call.result);
  }

  void Report(const scenario::Step& step) {
    const auto* const trace = std::get_if<scenario::Trace>(&step.content);
    if (step.kind != scenario::Kind::kRequest || trace == nullptr) return branches_.End(ToText({}));
    BranchReport report{step.Text(), step.file, step.line, step.rounds, {}, {}};
    for (const scenario::TraceLine& line : trace->lines) {
      const auto* const event = std::get_if<calls::Event>(&line.what);
      if (event == nullptr) continue;
      if (const auto* log_line = std::get_if<calls::LogLine>(event)) {
        report.outcome.log.push_back(*log_line);
      } else if (line.kind() == scenario::TraceLine::Kind::kCall) {
        AddCall(std::get<calls::Call>(*event), report.calls);
      }
    }
    report.outcome.result = trace->result.Text();
    report.outcome.findings = Audit(card_, ledger_);
    if (refuses_) Remove(unhindered_.findings, report.outcome.findings);
    if (refuses_ && report.outcome.result != unhindered_.result) report.outcome.again = Make(report.request);
    if (const std::string destroy = DestroyOf(report.request); !destroy.empty() && Exists(report.request)) {
      report.outcome.destroy = Make(destroy);
    }
    branches_.End(ToText(report));
  }

  /// Calls are numbered as the fault plan numbers them; those that cannot be refused take a number, too.
  void AddCall(const calls::Call& call, std::vector<RefusedCall>& calls) {
    ++calls_;
    if (!call.function->can_be_refused() || !call.thrown.empty()) return;
    calls.push_back({calls_, call.function, static_cast<int>(std::get<std::int64_t>(call.result))});
  }

  static void Remove(const std::vector<Finding>& known, std::vector<Finding>& findings) {
    findings.erase(std::remove_if(findings.begin(), findings.end(),
                                  [&](const Finding& finding) {
                                    return std::any_of(known.begin(), known.end(),
                                                       [&](const Finding& one) { return AreAlike(one, finding); });
                                  }),
                   findings.end());
  }

  /// Whether what a request is about is on the card.
  bool Exists(const std::string& request) const {
    scenario::Texts texts;
    const auto words = scenario::Tokenize(request, texts);
    const unsigned id = scenario::ToUnsigned(words[1], "id");
    if (words[0].text.substr(words[0].text.find('-')) == "-vrf") return card_.tables().vrfs.Exists(id);
    return card_.common().destination_id_correlators.count(static_cast<int>(id)) > 0;
  }

  /// What a request would return now, when nothing else is refused.
  std::string Make(const std::string& request) {
    if (branches_.Begin()) {
      card_.faults().Clear();
      scenario::Texts texts;
      std::set<std::string> clients;
      std::set<scenario::Observer*> watchers;
      const auto statement =
          language_.Read(scenario::Tokenize(request, texts), {card_.description(), {}, clients, watchers});
      scenario::Performer performer(card_);
      scenario::Run run{card_, performer};
      const scenario::Content content = statement.action(run);
      branches_.End(std::get<scenario::Trace>(content).result.Text());
    }
    const Ending ending = branches_.Next();
    return ending.crash.empty() ? ending.report : ending.crash;
  }

  const scenario::Language& language_;
  softcard::Card& card_;
  const Ledger& ledger_;
  const SweepOptions options_;
  Branches& branches_;
  const std::function<void(const SweptRequest&)>& tell_;
  SweepOutcome unhindered_;  ///< of the request that comes next
  bool in_branch_ = false;
  bool refuses_ = false;
  unsigned long calls_ = 0;
};

}  // namespace

std::string RefusedCall::Text() const {
  return std::to_string(number) + ". " + function->name + " = " +
         calls::Text(function->result_kind(), calls::Value(std::int64_t{result}));
}

bool SweptRequest::FailsAgain(const SweepOutcome& refusal) const {
  return !refusal.again.empty() && refusal.again != unhindered.result;
}

bool SweptRequest::CannotBeDestroyed(const SweepOutcome& refusal) const {
  const auto fails = [](const std::string& result) { return !result.empty() && result != "0"; };
  return fails(refusal.destroy) && !fails(unhindered.destroy);
}

bool SweptRequest::IsHarmless(const SweepOutcome& refusal) const {
  return refusal.crash.empty() && refusal.findings.empty() && !FailsAgain(refusal) && !CannotBeDestroyed(refusal);
}

std::vector<int> ResultsOfRefusal(const calls::Function& function, bool all_codes) {
  using calls::Result;
  if (!all_codes) return {function.result == Result::kFound ? 0 : static_cast<int>(BCM_E_FAIL)};
  switch (function.result) {
    case Result::kFound: return {0};
    case Result::kPredicate: return {BCM_E_FAIL, 0, 1};
    // Two results are told apart: that of a success with a remark, and the failure that nobody logs.
    case Result::kStatus: return {BCM_E_FAIL, BCM_E_UNAVAIL, 1};
    case Result::kId: return {BCM_E_FAIL, BCM_E_UNAVAIL};
    default: return {BCM_E_FAIL, 0, 7, 65636};
  }
}

void Sweep(const scenario::Scenario& scenario, softcard::Card& card, const Ledger& ledger, const SweepOptions& options,
           Branches& branches, const std::function<void(const SweptRequest&)>& tell) {
  Sweeper sweeper(*scenario.language, card, ledger, options, branches, tell);
  scenario::Options run;
  run.afterwards = options.afterwards;
  scenario::RunScenario(scenario, card, run, sweeper);
}

}  // namespace diagnosis
