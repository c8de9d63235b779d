#include <algorithm>
#include <ostream>

#include "console/LogPrinters.h"
#include "console/TextPrinter.h"
#include "scenario/Suggestion.h"

namespace console {
namespace {

using diagnosis::LogCause;
using diagnosis::LogRequest;

/// "install-mpls 30"
std::string NameOf(const LogRequest& request) {
  std::string name;
  for (const LogCause& cause : request.causes) {
    if (name.find(cause.request) == std::string::npos) name += (name.empty() ? "" : " or ") + cause.request;
  }
  if (name.empty()) name = "a request";
  return request.id.empty() ? name : name + (request.causes.empty() ? " about " : " ") + request.id;
}

/// "IntfManager::GetIntfObject (2nd), not found"
std::string RefusalText(const LogCause& cause) {
  if (cause.call.empty()) return "no call was refused: " + cause.titles[0];
  const std::string nth = cause.nth == 1 ? "" : " (call " + std::to_string(cause.nth) + " of it)";
  return cause.call + nth + ", " + cause.status;
}

/// What came of it.
std::string OutcomeText(const LogCause& cause) {
  std::string text = "    => " + cause.result;
  if (cause.left.empty()) return text + ", leaves nothing\n";
  text += ", leaves\n";
  for (const diagnosis::Finding& finding : cause.left) {
    text += "      " + finding.object + ": " + finding.problem + "\n        a packet:  " + finding.packet +
            "\n        clean up:  " + finding.remedy + '\n';
  }
  return text;
}

/// Causes with the same outcome stand together. A refusal that changes nothing is none to tell of where it is a
/// success.
std::string CausesText(const LogRequest& request) {
  std::vector<std::pair<std::string, std::string>> outcomes;  // with the refusals before them
  const bool without = std::any_of(request.causes.begin(), request.causes.end(),
                                   [](const LogCause& cause) { return cause.call.empty(); });
  for (const LogCause& cause : request.causes) {
    if (without && !cause.call.empty() && cause.harmless) continue;
    if (request.MayHaveSucceeded() && cause.harmless && cause.left.empty()) continue;
    const std::string outcome = OutcomeText(cause);
    auto known = std::find_if(outcomes.begin(), outcomes.end(), [&](const auto& one) { return one.second == outcome; });
    if (known == outcomes.end()) known = outcomes.insert(known, {"", outcome});
    known->first += "  " + RefusalText(cause) + '\n';
  }
  std::string text;
  for (const auto& [refusals, outcome] : outcomes) text += refusals + outcome;
  return text;
}

}  // namespace

bool IsSilent(const LogRequest& request) {
  return request.MayHaveSucceeded() && std::any_of(request.causes.begin(), request.causes.end(),
                                                   [](const LogCause& cause) { return !cause.harmless; });
}

void LogTally::Add(const LogRequest& request) {
  ++requests;
  if (request.causes.empty()) {
    ++unexplained;
  } else if (!request.MayHaveSucceeded()) {
    ++failed;
  } else if (IsSilent(request)) {
    ++silent;
  }
}

void LogText::Found(const LogRequest& request) {
  if (all_ || !request.MayHaveSucceeded()) {
    Print(request);
  } else if (IsSilent(request)) {
    Alike& alike = silent_[request.lines_alike];
    if (alike.count++ == 0) alike.first = request;
  }
}

void LogText::Print(const LogRequest& request) {
  out_ << scenario::Printable(file_) << ':' << request.first_line;
  if (request.last_line != request.first_line) out_ << '-' << request.last_line;
  out_ << ": " << NameOf(request);
  if (request.begins_before) out_ << ", which began before the log";
  if (request.may_go_on) out_ << ", which may go on behind the log";
  out_ << '\n';
  if (request.causes.empty()) {
    out_ << "  no refusal of a single call writes these lines: there were several, or lines are missing\n";
  } else if (all_ && request.MayHaveSucceeded()) {
    out_ << "  succeeded" << (IsSilent(request) ? ", or\n" : "\n");
  }
  out_ << CausesText(request);
}

void LogText::Ended(const LogTally& tally) {
  for (const auto& [lines, alike] : silent_) {
    out_ << Counted(alike.count, "request") << " that may have failed without a word, such as\n";
    Print(alike.first);
  }
  out_ << scenario::Printable(file_) << ": " << Counted(tally.lines, "line") << ", " << tally.module_lines
       << " of the module, " << Counted(tally.requests, "request") << ": " << tally.failed << " refused something, "
       << tally.silent << " may have failed without a word, " << tally.unexplained << " unexplained\n";
  if (tally.stray > 0) out_ << Counted(tally.stray, "line") << " of the module of no request that is known\n";
  if (tally.too_long > 0) out_ << Counted(tally.too_long, "line") << " of over 64 KiB passed over\n";
  if (tally.module_lines == 0) {
    out_ << "the module has logged nothing here; is this the log that it writes to, with its progress (level 7)?\n";
  }
}

}  // namespace console
