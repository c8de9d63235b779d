#include <algorithm>
#include <initializer_list>

#include "calls/Pattern.h"
#include "scenario/Failure.h"
#include "scenario/Run.h"
#include "scenario/Statements.h"
#include "scenario/Suggestion.h"
#include "scenario/SyntaxError.h"
#include "scenario/Values.h"
#include "softcard/packets/Drop.h"

namespace scenario {
namespace {

using About = Expectation::About;

Lines LinesOf(const Trace& trace, std::initializer_list<TraceLine::Kind> kinds) {
  Lines lines;
  for (const TraceLine& line : trace.lines) {
    if (std::count(kinds.begin(), kinds.end(), line.kind()) > 0) lines.push_back(line.Text());
  }
  return lines;
}

/// What is printed of it unless more is asked for.
Lines LinesOf(const Trace& trace) {
  using Kind = TraceLine::Kind;
  return LinesOf(trace, {Kind::kCall, Kind::kLog, Kind::kClient, Kind::kPacket});
}

Lines TextsOf(const std::vector<Notification>& notifications) {
  Lines lines;
  for (const Notification& notification : notifications) lines.push_back(notification.Text());
  return lines;
}

bool IsNumber(const Token& word) {
  return !word.quoted && !word.text.empty() && word.text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Expects a line of this kind, or none.
Check AmongLines(TraceLine::Kind kind, std::string pattern, const char* what, bool negated) {
  return [kind, pattern = std::move(pattern), what, negated](const Run& run) {
    return Among(LinesOf(run.last, {kind}), pattern, what, negated);
  };
}

Check ReadResult(const Fields& fields, const Surroundings&) {
  return [number = ToStatus(fields.words()[0], "result")](const Run& run) {
    const RequestResult& result = run.last.result;
    return Unless(result.kind == RequestResult::Kind::kNumber && result.number == number, std::to_string(number),
                  {result.Text()});
  };
}

Check ReadThrow(const Fields& fields, const Surroundings&) {
  return [pattern = std::string(fields.words()[0].text)](const Run& run) {
    const RequestResult& result = run.last.result;
    return Unless(result.kind == RequestResult::Kind::kThrew && calls::Matches(pattern, result.thrown),
                  "threw " + pattern, {result.Text()});
  };
}

Check ReadLog(const Fields& fields, const Surroundings& around) {
  constexpr long long kLowestLevel = 0, kHighestLevel = 7;
  const std::vector<Token>& words = fields.words();
  std::string level = "*";
  std::string text = "*";
  if (fields.Has(1) || (fields.Has(0) && IsNumber(words[0]))) {
    level = std::to_string(ToNumber(words[0], "log level", kLowestLevel, kHighestLevel));
    if (fields.Has(1)) text = words[1].text;
  } else if (fields.Has(0)) {
    text = words[0].text;
  }
  return AmongLines(TraceLine::Kind::kLog, "log " + level + ": " + text, "log line", around.negated);
}

/// A bare word is a function, whatever its arguments and result; a quoted one the whole call.
Check ReadCall(const Fields& fields, const Surroundings& around) {
  std::string pattern = "*";
  if (fields.Has(0)) {
    const Token& call = fields.words()[0];
    pattern = call.quoted ? ToCallPattern(call) : ToFunction(call) + "(*";
  }
  return AmongLines(TraceLine::Kind::kCall, std::move(pattern), "call", around.negated);
}

Check ReadNotification(const Fields& fields, const Surroundings& around) {
  const Token* const id = fields.Find("id");
  const Token* const port = fields.Find("port");
  const bool named = fields.Has(0) && !fields.words()[0].text.empty();
  if (named && around.clients.count(std::string(fields.words()[0].text)) == 0) {
    throw SyntaxError{fields.words()[0].offset,
                      "no line before this one registers a client " + Quoted(fields.words()[0].text) +
                          Suggest(fields.words()[0].text, {around.clients.begin(), around.clients.end()})};
  }
  const std::string pattern = "client " + (named ? std::string(fields.words()[0].text) : "*") +
                              " is told id=" + (id != nullptr ? std::to_string(ToUnsigned(*id, "id")) : "*") +
                              " port=" + (port != nullptr ? std::to_string(ToInt(*port, "chip port")) : "*");
  return [pattern, negated = around.negated](const Run& run) {
    return Among(TextsOf(run.last.notifications), pattern, "notification", negated);
  };
}

/// Refuses the name of a drop that there is none of, and one without its reason, which no line is.
void CheckDrop(const Token& way) {
  constexpr std::string_view kDropped = "dropped: ";
  if (way.text.substr(0, kDropped.size()) != kDropped) return;
  const std::string_view name =
      way.text.substr(kDropped.size(), way.text.find_first_of(":*", kDropped.size()) - kDropped.size());
  const bool whole = kDropped.size() + name.size() == way.text.size() || way.text[kDropped.size() + name.size()] == ':';
  std::vector<std::string> names;
  names.reserve(softcard::kDrops);
  for (int drop = 0; drop < softcard::kDrops; ++drop) names.emplace_back(softcard::DropName(softcard::Drop{drop}));
  const auto fits = [&](const std::string& known) {
    return whole ? known == name : known.compare(0, name.size(), name) == 0;
  };
  const std::size_t offset = way.offset + (way.quoted ? 1 : 0) + kDropped.size();
  if (!std::any_of(names.begin(), names.end(), fits)) {
    throw SyntaxError{offset, "no packet is dropped by the name of " + Quoted(name) + Suggest(name, names)};
  }
  const std::string_view reason = way.text.substr(kDropped.size() + name.size());
  if (std::string_view(": ").substr(0, reason.size()) == reason) {
    throw SyntaxError{offset,
                      "the packet's line goes on with the reason: write \"dropped: " + std::string(name) + "*\""};
  }
}

Check ReadPacket(const Fields& fields, const Surroundings& around) {
  const Token& way = fields.words()[0];
  CheckDrop(way);
  return [pattern = std::string(way.text), negated = around.negated](const Run& run) {
    return Among(LinesOf(run.last, {TraceLine::Kind::kPacket, TraceLine::Kind::kFrame}), pattern, "packet", negated);
  };
}

Check ReadTrace(const Fields&, const Surroundings& around) {
  return [lines = around.block](const Run& run) { return UnlessEqual(lines, LinesOf(run.last)); };
}

}  // namespace

void AddTraceExpectations(Language& language) {
  constexpr int kPlain = Expectation::kPlain, kNegatable = Expectation::kNegatable;
  language.Add("expect", "[no] WHAT...", "Fails the run unless it holds", Kind::kExpectation);
  language.AddExpectation("result", "NUMBER", "What the request returns", About::kResult, kPlain, ReadResult);
  language.AddExpectation("throw", "TEXT", "What the request throws", About::kResult, kPlain, ReadThrow);
  language.AddExpectation("log", "[LEVEL] [TEXT]", "A log line", About::kModule, kNegatable, ReadLog);
  language.AddExpectation("call", "[CALL]", "A call: a function, or in quotes a whole call", About::kModule, kNegatable,
                          ReadCall);
  language.AddExpectation("notification", "[CLIENT] [id=ID] [port=PORT]", "That a client is told", About::kModule,
                          kNegatable, ReadNotification);
  language.AddExpectation("packet", "TEXT", "A step of the packet's way", About::kPacket, kNegatable, ReadPacket);
  language.AddExpectation("trace", "", "Exactly these calls, log lines and notifications, in this order", About::kStep,
                          Expectation::kHasBlock, ReadTrace);
}

}  // namespace scenario
