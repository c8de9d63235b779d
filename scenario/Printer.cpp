#include "scenario/Printer.h"

#include <ostream>

#include "scenario/Holdings.h"
#include "scenario/Tokens.h"
#include "softcard/Card.h"

namespace scenario {
namespace {

constexpr char kBold[] = "\033[1m";
constexpr char kDim[] = "\033[2m";
constexpr char kRed[] = "\033[31m";
constexpr char kGreen[] = "\033[32m";
constexpr char kYellow[] = "\033[33m";
constexpr char kCyan[] = "\033[36m";
constexpr char kPlain[] = "";

/// Failures stand out; progress steps back behind the calls.
const char* ColourOf(const TraceLine& line) {
  const auto begins = [&](const char* start) { return line.text.rfind(start, 0) == 0; };
  switch (line.kind) {
    case TraceLine::Kind::kLog: return begins("log 3") ? kRed : begins("log 7") ? kDim : kYellow;
    case TraceLine::Kind::kCall: return line.text.find(") = -") != std::string::npos ? kRed : kPlain;
    case TraceLine::Kind::kPacket: return begins("dropped") ? kRed : kPlain;
    case TraceLine::Kind::kAccess: return kDim;
    case TraceLine::Kind::kClient: break;
  }
  return kCyan;
}

std::string Word(const std::string& text, std::size_t index) {
  const auto words = Tokenize(text);
  return index < words.size() ? words[index].text : "";
}

}  // namespace

std::string Printer::Paint(const char* colour, const std::string& text) const {
  return colour_ && *colour != '\0' ? colour + text + "\033[0m" : text;
}

std::string Printer::PaintResult(const Outcome& outcome) const {
  const bool good = outcome.kind == Outcome::Kind::kNumber && outcome.number >= 0;
  return Paint(good ? kGreen : kRed, "=> " + outcome.Text());
}

void Printer::Said(const std::string& text) {
  if (detail_ == Detail::kFailures) return;
  PrintRow();
  out_ << '\n' << Paint(kBold, "# " + text) << '\n';
}

void Printer::Started(const Record& record) {
  if (detail_ != Detail::kCalls || record.trace.empty()) return;
  out_ << Paint(kBold, "start-up") << '\n';
  PrintTrace(record);
}

void Printer::Requested(const std::string& text, const Record& record) {
  if (detail_ == Detail::kRequests) Fold(text, record);
  if (detail_ != Detail::kCalls) return;
  out_ << '\n' << Paint(kBold, text) << '\n';
  PrintTrace(record);
  if (record.outcome.kind != Outcome::Kind::kNone) out_ << "  " << PaintResult(record.outcome) << '\n';
}

void Printer::Sent(const std::string& text, const Record& record) {
  if (detail_ == Detail::kFailures) return;
  PrintRow();
  if (detail_ == Detail::kCalls) out_ << '\n';
  out_ << Paint(kBold, text) << '\n';
  PrintTrace(record);
}

void Printer::PrintTrace(const Record& record) {
  for (const TraceLine& line : record.trace) {
    out_ << std::string(4 + 2 * line.depth, ' ') << Paint(ColourOf(line), line.text) << '\n';
  }
}

void Printer::Showing(const std::string& text) {
  if (detail_ == Detail::kCalls) out_ << '\n' << Paint(kBold, text) << '\n';
}

void Printer::Shown(const std::string& table) {
  if (detail_ == Detail::kFailures) return;
  PrintRow();
  std::vector<std::string> lines;
  if (table == "destinations") {
    for (const Holding& holding : Holdings()) {
      lines.push_back(holding.destination);
      for (const std::string& row : holding.rows) lines.push_back("  " + row);
    }
  } else {
    lines = softcard::Texts(softcard::Card::Get().Rows(table));
  }
  out_ << Paint(kCyan, "  " + table) << (lines.empty() ? ": none" : ":") << '\n';
  for (const std::string& line : lines) out_ << "    " << line << '\n';
}

void Printer::Planned(const std::string& text) {
  if (detail_ == Detail::kFailures) return;
  PrintRow();
  if (detail_ == Detail::kCalls) out_ << '\n';
  out_ << Paint(kYellow, text) << '\n';
}

void Printer::Held(const std::string& text) {
  if (detail_ == Detail::kCalls) out_ << Paint(kDim, "  ok: " + text) << '\n';
}

void Printer::Failed(const std::string& place, const std::string& text, const Failure& failure) {
  PrintRow();
  out_ << Paint(kRed, place + ": failed: ") << text << '\n';
  for (const std::string& line : failure) out_ << "    " << line << '\n';
}

void Printer::Summed(const std::string& text, bool good) {
  PrintRow();
  if (detail_ != Detail::kFailures) out_ << '\n';
  out_ << Paint(good ? kGreen : kRed, text) << std::endl;
}

void Printer::Fold(const std::string& text, const Record& record) {
  const std::string name = Word(text, 0);
  const std::string result = record.outcome.kind == Outcome::Kind::kNone ? "" : " " + PaintResult(record.outcome);
  if (row_.name != name || row_.result != result) {
    PrintRow();
    row_ = {name, result, text, "", 0};
  }
  row_.last = text;
  ++row_.count;
}

void Printer::PrintRow() {
  if (row_.count == 1) out_ << row_.first << row_.result << '\n';
  if (row_.count > 1) {
    out_ << row_.name << ' ' << Word(row_.first, 1) << " ... " << Word(row_.last, 1) << " (" << row_.count
         << " requests)" << row_.result << '\n';
  }
  row_ = {};
}

}  // namespace scenario
