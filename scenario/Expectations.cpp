#include "scenario/Expectations.h"

#include <algorithm>

#include "scenario/Difference.h"
#include "scenario/Suggestion.h"
#include "softcard/Card.h"

namespace scenario {
namespace {

using Kind = Expectation::Kind;
using Lines = std::vector<std::string>;

Lines Rows(const std::string& table) { return softcard::Texts(softcard::Card::Get().Rows(table)); }

Lines TraceOf(const Record& record) {
  Lines lines;
  for (const TraceLine& line : record.trace) {
    if (line.kind != TraceLine::Kind::kAccess) lines.push_back(line.text);
  }
  return lines;
}

Lines LinesOf(const Record& record, TraceLine::Kind kind) {
  Lines lines;
  for (const TraceLine& line : record.trace) {
    if (line.kind == kind) lines.push_back(line.text);
  }
  return lines;
}

std::optional<Failure> Unless(bool holds, const std::string& expected, const Lines& found) {
  if (holds) return std::nullopt;
  Failure failure = {"expected: " + expected, "found:    " + (found.empty() ? "nothing" : found[0])};
  for (std::size_t i = 1; i < found.size(); ++i) failure.push_back("          " + found[i]);
  return failure;
}

std::optional<Failure> UnlessEqual(const Lines& expected, const Lines& found) {
  if (Match(expected, found)) return std::nullopt;
  Failure failure = {"- expected, + found:"};
  for (const std::string& line : Difference(expected, found)) failure.push_back(line);
  return failure;
}

/// Expects a line that fits, or none that does.
std::optional<Failure> Among(const Lines& found, const std::string& pattern, const std::string& what, bool negated) {
  Lines fitting;
  std::copy_if(found.begin(), found.end(), std::back_inserter(fitting),
               [&](const std::string& line) { return Matches(pattern, line); });
  const std::string that = pattern == "*" ? what : what + " " + Quoted(pattern);
  return negated ? Unless(fitting.empty(), "no " + that, fitting) : Unless(!fitting.empty(), that, found);
}

std::string LogPattern(const Expectation& expectation) {
  const std::string level = expectation.number ? std::to_string(*expectation.number) : "*";
  return "log " + level + ": " + expectation.text.value_or("*");
}

std::string NotificationPattern(const Expectation& expectation) {
  const auto number = [](const std::optional<long long>& n) { return n ? std::to_string(*n) : "*"; };
  const std::string client = expectation.name.empty() ? "*" : expectation.name;
  return "client " + client + " is told id=" + number(expectation.destination) + " port=" + number(expectation.port);
}

Lines TextsOf(const std::vector<Notification>& notifications) {
  Lines lines;
  for (const Notification& notification : notifications) lines.push_back(notification.Text());
  return lines;
}

/// The rows of all tables that begin empty, but for those of the tables in `except`.
Lines LeftOnCard(const Lines& except) {
  Lines left;
  for (const std::string& table : softcard::Card::TableNames()) {
    const bool begins_empty = table != "switch" && table != "ports" && table != "lags";
    if (!begins_empty || std::find(except.begin(), except.end(), table) != except.end()) continue;
    const Lines rows = Rows(table);
    left.insert(left.end(), rows.begin(), rows.end());
  }
  return left;
}

}  // namespace

std::optional<Failure> Check(const Expectation& e, const Record& last) {
  switch (e.kind) {
    case Kind::kResult: {
      const bool holds = last.outcome.kind == Outcome::Kind::kNumber && last.outcome.number == e.number;
      return Unless(holds, std::to_string(*e.number), {last.outcome.Text()});
    }
    case Kind::kThrow: {
      const bool holds = last.outcome.kind == Outcome::Kind::kThrew && Matches(*e.text, last.outcome.thrown);
      return Unless(holds, "threw " + *e.text, {last.outcome.Text()});
    }
    case Kind::kLog: return Among(LinesOf(last, TraceLine::Kind::kLog), LogPattern(e), "log line", e.negated);
    case Kind::kCall: return Among(LinesOf(last, TraceLine::Kind::kCall), e.text.value_or("*"), "call", e.negated);
    case Kind::kNotification:
      return Among(TextsOf(last.notifications), NotificationPattern(e), "notification", e.negated);
    case Kind::kPacket: return Among(LinesOf(last, TraceLine::Kind::kPacket), *e.text, "packet", e.negated);
    case Kind::kTrace: return UnlessEqual(e.lines, TraceOf(last));
    case Kind::kRows: {
      const auto count = static_cast<long long>(Rows(e.name).size());
      return Unless(count == e.number, std::to_string(*e.number) + " rows in " + e.name, {std::to_string(count)});
    }
    case Kind::kTable: return UnlessEqual(e.lines, Rows(e.name));
    case Kind::kEmpty: {
      const Lines left = LeftOnCard(e.lines);
      return Unless(left.empty(), "nothing on the card", left);
    }
  }
  return std::nullopt;
}

}  // namespace scenario
