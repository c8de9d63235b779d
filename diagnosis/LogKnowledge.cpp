#include "diagnosis/LogKnowledge.h"

#include <algorithm>
#include <cstdlib>

#include "diagnosis/Refusals.h"
#include "diagnosis/Sweep.h"
#include "softcard/LimId.h"

namespace diagnosis {
namespace {

constexpr char kTheStatus[] = "the status";

using LoggedLines = std::vector<std::pair<std::size_t, LogValues>>;

/// The words that the platform gave in a call, for the log line that follows.
void AddGiven(const calls::Call& call, std::vector<std::string>& given) {
  if (const auto* text = std::get_if<std::string>(&call.result)) given.push_back(*text);
  if (const auto* status = std::get_if<std::int64_t>(&call.result); status != nullptr && call.injected && *status < 0) {
    given.emplace_back(calls::StatusWords(*status));
  }
  for (std::size_t i = 0; i < call.arguments.size(); ++i) {
    if (call.function->arguments[i].kind != calls::Kind::kLimId) continue;
    const std::string name = calls::Text(calls::Kind::kLimId, call.arguments[i], softcard::kLimIdNames);
    given.push_back(name);
    // "absent:eth99" is called eth99 all the same.
    given.push_back(name.substr(name.find(':') + 1));
  }
}

/// The names of the clients in a situation.
std::vector<std::string> Clients(const Situation& situation) {
  std::vector<std::string> clients;
  for (const std::string& line : situation.before) {
    scenario::Texts texts;
    const auto words = scenario::Tokenize(line, texts);
    if (words[0].text == "client") clients.emplace_back(words[1].text);
  }
  return clients;
}

bool AreAlike(const std::vector<Finding>& some, const std::vector<Finding>& others) {
  return std::equal(some.begin(), some.end(), others.begin(), others.end(), [](const Finding& a, const Finding& b) {
    return a.object == b.object && a.problem == b.problem && a.remedy == b.remedy;
  });
}

/// The holes that are filled with `first`.
unsigned SameAs(const std::string& first, const LogValues& values) {
  unsigned same = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!first.empty() && values[i] == first) same |= 1U << i;
  }
  return same;
}

std::string FirstOf(const LogValues& values) { return values.empty() ? "" : values[0]; }

/// A status is shown without its sign, which is part of the text.
void FindStatus(LoggedRun& run) {
  const auto result = run.refused->result;
  const bool shown = result == calls::Result::kStatus || result == calls::Result::kId;
  if (!shown || run.statuses[0] >= 0) return;
  const std::string digits = std::to_string(std::abs(run.statuses[0]));
  for (std::size_t line = 0; line < run.values.size(); ++line) {
    for (std::size_t hole = 0; hole < run.values[line].size(); ++hole) {
      if (run.values[line][hole] == digits) run.status_place = {line, hole};
    }
  }
}

}  // namespace

LogKnowledge::LogKnowledge(const scenario::Language& language, softcard::Card& card)
    : language_(language), card_(card) {
  for (const LogSituation& situation : LogSituations()) Learn(situation);
}

const LogKnowledge::Edge* LogKnowledge::Follow(std::size_t node, const LogTexts::Found& line,
                                               const std::string& first) const {
  const Edge* best = nullptr;
  const unsigned same = SameAs(node == kRoot ? FirstOf(line.values) : first, line.values);
  for (const Edge& edge : nodes_[node].edges) {
    const bool fits = edge.text == line.number && (edge.same & ~same) == 0;
    if (fits && (best == nullptr || edge.same > best->same)) best = &edge;
  }
  return best;
}

void LogKnowledge::Learn(const LogSituation& situation) {
  const std::string request = situation.situation.request.substr(0, situation.situation.request.find(' '));
  const auto clients = Clients(situation.situation);
  const auto learn = [&](const Attempt& attempt, LoggedRun run) {
    LoggedLines lines;
    std::size_t told = 0;  // where the clients begin to be told; 0: they are not
    std::vector<std::string> given = clients;
    for (const scenario::TraceLine& line : attempt.trace.lines) {
      if (line.kind() == scenario::TraceLine::Kind::kClient) {
        if (told == 0 && !lines.empty()) told = lines.size() - 1;
        continue;
      }
      const auto& event = std::get<calls::Event>(line.what);
      if (const auto* call = std::get_if<calls::Call>(&event)) {
        AddGiven(*call, given);
        continue;
      }
      const std::string& text = std::get<calls::LogLine>(event).text;
      const LogText log_text(text, given);
      LogValues values;
      log_text.Fits(text, values);
      lines.emplace_back(texts_.Add(log_text), values);
      given = clients;
    }
    run.titles = {situation.title};
    run.request = request;
    run.result = attempt.trace.result.Text();
    if (!run.statuses.empty() && run.statuses[0] < 0 && run.result == std::to_string(run.statuses[0])) {
      run.result = kTheStatus;
    }
    if (lines.empty()) return;
    // What clients do when they are told stands between these lines and the rest.
    if (told > 0) Add(lines, told, run);
    Add(lines, 0, std::move(run));
  };

  const scenario::Options options{true, false};
  const Attempt unhindered = Try(language_, card_, situation.situation, &ledger_, options);
  const auto findings = Audit(card_, ledger_);
  LoggedRun usual;
  usual.findings = findings;
  usual.harmless = true;
  learn(unhindered, usual);

  unsigned long number = 0;
  std::vector<const calls::Function*> functions;
  for (const calls::Call& call : CallsOf(unhindered)) {
    ++number;
    functions.push_back(call.function);
    if (!call.function->can_be_refused()) continue;
    for (const int status : ResultsOfRefusal(*call.function, !situation.is_variant)) {
      if (std::get<std::int64_t>(call.result) == status) continue;
      Situation hindered = situation.situation;
      hindered.before.push_back("fail call=" + std::to_string(number) + " result=" + std::to_string(status));
      const Attempt attempt = Try(language_, card_, hindered, &ledger_, options);
      LoggedRun run;
      run.refused = call.function;
      run.nth = static_cast<unsigned>(std::count(functions.begin(), functions.end(), call.function));
      run.statuses = {status};
      run.findings = Audit(card_, ledger_);
      run.harmless = attempt.trace.result.Text() == unhindered.trace.result.Text() && AreAlike(run.findings, findings);
      learn(attempt, std::move(run));
    }
  }
}

void LogKnowledge::Add(const LoggedLines& lines, std::size_t from, LoggedRun run) {
  std::size_t node = kRoot;
  const std::string first = FirstOf(lines[from].second);
  for (std::size_t i = from; i < lines.size(); ++i) {
    const auto& [text, values] = lines[i];
    run.values.push_back(values);
    const unsigned same = SameAs(first, values);
    auto& edges = nodes_[node].edges;
    const auto known = std::find_if(edges.begin(), edges.end(), [text = text, same](const Edge& edge) {
      return edge.text == text && edge.same == same;
    });
    if (known != edges.end()) {
      node = known->node;
    } else {
      edges.push_back({text, same, nodes_.size()});
      nodes_.push_back({node, text, same, {}, {}});
      node = nodes_.size() - 1;
    }
  }
  if (run.refused != nullptr) FindStatus(run);
  for (LoggedRun& known : nodes_[node].runs) {
    if (known.request != run.request || known.refused != run.refused || known.nth != run.nth ||
        known.result != run.result || known.harmless != run.harmless || !AreAlike(known.findings, run.findings)) {
      continue;
    }
    for (const int status : run.statuses) {
      if (std::find(known.statuses.begin(), known.statuses.end(), status) == known.statuses.end()) {
        known.statuses.push_back(status);
      }
    }
    if (known.titles.back() != run.titles[0]) known.titles.push_back(run.titles[0]);
    return;
  }
  nodes_[node].runs.push_back(std::move(run));
}

}  // namespace diagnosis
