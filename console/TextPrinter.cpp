#include "console/TextPrinter.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <ostream>
#include <variant>

#include "scenario/Suggestion.h"
#include "scenario/Tokens.h"

namespace console {
namespace {

using scenario::Printable;
using scenario::RequestResult;
using scenario::RoundText;
using scenario::Step;
using scenario::Trace;
using scenario::TraceLine;

constexpr char kBold[] = "\033[1m";
constexpr char kDim[] = "\033[2m";
constexpr char kRed[] = "\033[31m";
constexpr char kGreen[] = "\033[32m";
constexpr char kYellow[] = "\033[33m";
constexpr char kCyan[] = "\033[36m";
constexpr char kPlain[] = "";

/// Failures stand out; progress steps back behind the calls.
const char* ColourOf(const TraceLine& line) {
  switch (line.kind()) {
    case TraceLine::Kind::kLog: {
      const int level = std::get<calls::LogLine>(std::get<calls::Event>(line.what)).level;
      return level == 3 ? kRed : level == 7 ? kDim : kYellow;
    }
    case TraceLine::Kind::kCall: return calls::IsRefused(std::get<calls::Event>(line.what)) ? kRed : kPlain;
    case TraceLine::Kind::kPacket: return line.Text().rfind("dropped", 0) == 0 ? kRed : kPlain;
    case TraceLine::Kind::kAccess:
    case TraceLine::Kind::kFrame: return kDim;
    case TraceLine::Kind::kClient: break;
  }
  return kCyan;
}

/// The number that is a request's second word; -1 when it is none.
long long IdOf(const std::string& text) {
  scenario::Texts texts;
  const auto words = scenario::Tokenize(text, texts);
  long long id = -1;
  if (words.size() > 1) std::from_chars(words[1].text.data(), words[1].text.data() + words[1].text.size(), id);
  return id;
}

/// Why a request does not return 0: the last line that the module logged about it, but for its progress; the last call
/// that was refused when there is none.
std::string ReasonOf(const Trace& trace) {
  constexpr int kProgress = 7;
  std::string log, call;
  for (const TraceLine& line : trace.lines) {
    if (line.kind() == TraceLine::Kind::kLog) {
      if (std::get<calls::LogLine>(std::get<calls::Event>(line.what)).level < kProgress) log = line.Text();
    } else if (line.kind() == TraceLine::Kind::kCall && calls::IsRefused(std::get<calls::Event>(line.what))) {
      call = line.Text();
    }
  }
  return log.empty() ? call : log;
}

}  // namespace

bool WantsColour(const std::string& choice) {
  if (choice != "auto") return choice == "always";
  const char* const no_colour = std::getenv("NO_COLOR");
  return isatty(STDOUT_FILENO) && (no_colour == nullptr || *no_colour == '\0');
}

std::string Counted(unsigned long count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

void TextPrinter::Took(const Step& step) {
  std::visit([&](const auto& content) { Print(step, content); }, step.content);
}

void TextPrinter::Print(const Step& step, const Trace& trace) {
  if (step.line == 0) {
    PrintStart(trace);
  } else if (step.kind == scenario::Kind::kPacket) {
    PrintPacket(step, trace);
  } else {
    PrintRequest(step, trace);
  }
}

void TextPrinter::PrintStart(const Trace& trace) {
  if (options_.detail != Detail::kCalls || trace.lines.empty()) return;
  out_ << Paint(kBold, "start-up") << '\n';
  PrintLines(trace);
}

void TextPrinter::PrintPacket(const Step& step, const Trace& trace) {
  if (options_.detail == Detail::kFailures) return;
  PrintRow();
  if (options_.detail == Detail::kCalls) {
    out_ << '\n' << Paint(kBold, step.Text()) << '\n';
    PrintLines(trace);
    return;
  }
  const auto last = std::find_if(trace.lines.rbegin(), trace.lines.rend(),
                                 [](const TraceLine& line) { return line.kind() == TraceLine::Kind::kPacket; });
  out_ << Printable(step.Text()) << ' ' << Paint(ColourOf(*last), "=> " + last->Text()) << '\n';
}

void TextPrinter::PrintRequest(const Step& step, const Trace& trace) {
  if (options_.detail == Detail::kRequests) Fold(step, trace);
  if (options_.detail != Detail::kCalls) return;
  out_ << '\n' << Paint(kBold, step.Text()) << '\n';
  PrintLines(trace);
  if (trace.result.kind != RequestResult::Kind::kNone) out_ << "  " << PaintResult(trace.result) << '\n';
}

void TextPrinter::PrintLines(const Trace& trace) {
  for (const TraceLine& line : trace.lines) {
    if (line.kind() == TraceLine::Kind::kFrame && !options_.frames) continue;
    out_ << std::string(4 + 2 * line.depth, ' ') << Paint(ColourOf(line), line.Text()) << '\n';
  }
}

void TextPrinter::Print(const Step& step, const scenario::Shown& shown) {
  if (options_.detail == Detail::kFailures) return;
  PrintRow();
  if (options_.detail == Detail::kCalls) out_ << '\n' << Paint(kBold, step.Text()) << '\n';
  for (const scenario::ShownTable& table : shown.tables) {
    out_ << Paint(kCyan, "  " + table.name) << (table.rows.empty() ? ": none" : ":") << '\n';
    for (const softcard::Row& row : table.rows) out_ << "    " << softcard::Text(row) << '\n';
  }
}

void TextPrinter::Print(const Step& step, const scenario::ShownChain& chain) {
  if (options_.detail == Detail::kFailures) return;
  PrintRow();
  if (options_.detail == Detail::kCalls) out_ << '\n';
  out_ << Paint(kBold, step.Text()) << '\n';
  for (const std::string& line : chain.lines) out_ << "    " << line << '\n';
}

void TextPrinter::PrintPlan(const Step& step) {
  if (options_.detail == Detail::kFailures) return;
  PrintRow();
  if (options_.detail == Detail::kCalls) out_ << '\n';
  out_ << Paint(kYellow, step.Text()) << '\n';
}

void TextPrinter::Print(const Step&, const scenario::Said& said) {
  if (options_.detail == Detail::kFailures) return;
  PrintRow();
  out_ << '\n' << Paint(kBold, "# " + said.text) << '\n';
}

void TextPrinter::Print(const Step& step, const scenario::Checked& checked) {
  if (!checked.failure) {
    if (options_.detail == Detail::kCalls) out_ << Paint(kDim, "  ok: " + step.Text()) << '\n';
    return;
  }
  PrintRow();
  if (++failures_ > options_.max_failures && options_.max_failures > 0) return;
  out_ << Paint(kRed, step.file + ":" + std::to_string(step.line) + ": failed: ") << Printable(step.Text()) << '\n';
  if (!step.rounds.empty()) out_ << "    with " << RoundText(step.rounds) << '\n';
  if (checked.request_line != 0 && checked.request_line != step.line) {
    out_ << "    after line " << checked.request_line << ": " << Printable(checked.request) << '\n';
  }
  for (const std::string& line : *checked.failure) out_ << "    " << Printable(line) << '\n';
}

void TextPrinter::Ended(const std::string& file, const scenario::Tally& tally) {
  PrintRow();
  if (failures_ > options_.max_failures && options_.max_failures > 0) {
    out_ << Paint(kRed, "and " + Counted(failures_ - options_.max_failures, "more failure")) << '\n';
  }
  failures_ = 0;
  if (options_.detail != Detail::kFailures) out_ << '\n';
  const std::string sum = file + ": " + Counted(tally.requests, "request") + ", " +
                          Counted(tally.expectations, "expectation") + ", " + std::to_string(tally.failed) + " failed";
  out_ << Paint(tally.failed == 0 ? kGreen : kRed, sum) << std::endl;
}

std::string TextPrinter::Paint(const char* colour, const std::string& text) const {
  return options_.colour && *colour != '\0' ? colour + Printable(text) + "\033[0m" : Printable(text);
}

std::string TextPrinter::PaintResult(const RequestResult& result) const {
  const bool good = result.kind == RequestResult::Kind::kNumber && result.number >= 0;
  return Paint(good ? kGreen : kRed, "=> " + result.Text());
}

void TextPrinter::Fold(const Step& step, const Trace& trace) {
  const std::string text = step.Text();
  Row next{step.file, step.line, step.rounds, text, "", IdOf(text), 0, IdOf(text), 1};
  if (!next.outer.empty()) next.outer.pop_back();
  if (trace.result.kind != RequestResult::Kind::kNone) next.result = " " + PaintResult(trace.result);
  if (!step.rounds.empty() && ContinuesRow(next)) {
    row_.step = next.first - row_.last;
    row_.last = next.first;
    ++row_.count;
    return;
  }
  PrintRow();
  row_ = std::move(next);
  if (trace.result.kind == RequestResult::Kind::kNone || trace.result.Text() == "0") return;
  const std::string reason = ReasonOf(trace);
  PrintRow();
  if (!reason.empty()) out_ << "    " << Paint(kRed, reason) << '\n';
}

bool TextPrinter::ContinuesRow(const Row& next) const {
  return row_.count > 0 && row_.file == next.file && row_.line == next.line && row_.outer == next.outer &&
         row_.result == next.result && (row_.count == 1 || next.first - row_.last == row_.step);
}

void TextPrinter::PrintRow() {
  if (row_.count == 1) out_ << Printable(row_.text) << row_.result << '\n';
  if (row_.count > 1) {
    out_ << row_.text.substr(0, row_.text.find_first_of(" \t"));
    if (row_.first >= 0) out_ << ' ' << row_.first;
    if (row_.step != 0) out_ << " ... " << row_.last;
    if (row_.step != 0 && row_.step != 1) out_ << " step " << row_.step;
    out_ << " (" << row_.count << " requests)" << row_.result << '\n';
  }
  row_ = {};
}

}  // namespace console
