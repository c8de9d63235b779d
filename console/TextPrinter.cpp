#include "console/TextPrinter.h"

#include <ostream>
#include <variant>

#include "scenario/Tokens.h"

namespace console {
namespace {

using scenario::RequestResult;
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
    case TraceLine::Kind::kAccess: return kDim;
    case TraceLine::Kind::kClient: break;
  }
  return kCyan;
}

std::string Word(const std::string& text, std::size_t index) {
  scenario::Texts texts;
  const auto words = scenario::Tokenize(text, texts);
  return index < words.size() ? std::string(words[index].text) : "";
}

std::string Counted(unsigned long count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace

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
  if (detail_ != Detail::kCalls || trace.lines.empty()) return;
  out_ << Paint(kBold, "start-up") << '\n';
  PrintLines(trace);
}

void TextPrinter::PrintPacket(const Step& step, const Trace& trace) {
  if (detail_ == Detail::kFailures) return;
  PrintRow();
  if (detail_ == Detail::kCalls) out_ << '\n';
  out_ << Paint(kBold, step.Text()) << '\n';
  PrintLines(trace);
}

void TextPrinter::PrintRequest(const Step& step, const Trace& trace) {
  if (detail_ == Detail::kRequests) Fold(step.Text(), trace.result);
  if (detail_ != Detail::kCalls) return;
  out_ << '\n' << Paint(kBold, step.Text()) << '\n';
  PrintLines(trace);
  if (trace.result.kind != RequestResult::Kind::kNone) out_ << "  " << PaintResult(trace.result) << '\n';
}

void TextPrinter::PrintLines(const Trace& trace) {
  for (const TraceLine& line : trace.lines) {
    out_ << std::string(4 + 2 * line.depth, ' ') << Paint(ColourOf(line), line.Text()) << '\n';
  }
}

void TextPrinter::Print(const Step& step, const scenario::Shown& shown) {
  if (detail_ == Detail::kFailures) return;
  PrintRow();
  if (detail_ == Detail::kCalls) out_ << '\n' << Paint(kBold, step.Text()) << '\n';
  for (const scenario::ShownTable& table : shown.tables) {
    out_ << Paint(kCyan, "  " + table.name) << (table.rows.empty() ? ": none" : ":") << '\n';
    for (const softcard::Row& row : table.rows) out_ << "    " << softcard::Text(row) << '\n';
  }
}

void TextPrinter::PrintPlan(const Step& step) {
  if (detail_ == Detail::kFailures) return;
  PrintRow();
  if (detail_ == Detail::kCalls) out_ << '\n';
  out_ << Paint(kYellow, step.Text()) << '\n';
}

void TextPrinter::Print(const Step&, const scenario::Said& said) {
  if (detail_ == Detail::kFailures) return;
  PrintRow();
  out_ << '\n' << Paint(kBold, "# " + said.text) << '\n';
}

void TextPrinter::Print(const Step& step, const scenario::Checked& checked) {
  if (!checked.failure) {
    if (detail_ == Detail::kCalls) out_ << Paint(kDim, "  ok: " + step.Text()) << '\n';
    return;
  }
  PrintRow();
  out_ << Paint(kRed, step.file + ":" + std::to_string(step.line) + ": failed: ") << step.Text() << '\n';
  for (const std::string& line : *checked.failure) out_ << "    " << line << '\n';
}

void TextPrinter::Ended(const std::string& file, const scenario::Tally& tally) {
  PrintRow();
  if (detail_ != Detail::kFailures) out_ << '\n';
  const std::string sum = file + ": " + Counted(tally.requests, "request") + ", " +
                          Counted(tally.expectations, "expectation") + ", " + std::to_string(tally.failed) + " failed";
  out_ << Paint(tally.failed == 0 ? kGreen : kRed, sum) << std::endl;
}

std::string TextPrinter::Paint(const char* colour, const std::string& text) const {
  return colour_ && *colour != '\0' ? colour + text + "\033[0m" : text;
}

std::string TextPrinter::PaintResult(const RequestResult& result) const {
  const bool good = result.kind == RequestResult::Kind::kNumber && result.number >= 0;
  return Paint(good ? kGreen : kRed, "=> " + result.Text());
}

void TextPrinter::Fold(const std::string& text, const RequestResult& result) {
  const std::string name = text.substr(0, text.find_first_of(" \t"));
  const std::string shown = result.kind == RequestResult::Kind::kNone ? "" : " " + PaintResult(result);
  if (row_.name != name || row_.result != shown) {
    PrintRow();
    row_ = {name, shown, text, "", 0};
  }
  row_.last = text;
  ++row_.count;
}

void TextPrinter::PrintRow() {
  if (row_.count == 1) out_ << row_.first << row_.result << '\n';
  if (row_.count > 1) {
    out_ << row_.name << ' ' << Word(row_.first, 1) << " ... " << Word(row_.last, 1) << " (" << row_.count
         << " requests)" << row_.result << '\n';
  }
  row_ = {};
}

}  // namespace console
