#include <algorithm>
#include <cctype>
#include <ostream>
#include <set>
#include <utility>

#include "console/SweepPrinters.h"
#include "console/TextPrinter.h"
#include "scenario/Suggestion.h"

namespace console {
namespace {

using diagnosis::SweepOutcome;
using diagnosis::SweptRequest;
using scenario::Printable;

constexpr int kProgressLevel = 7;
constexpr std::size_t kColumn = 9;
const std::string kIndent(3 * kColumn + 2, ' ');

/// A number or a word, right in its column.
std::string Column(const std::string& text) {
  const std::string word = text.empty() ? "-" : text.substr(0, text.find_first_of(" :"));
  return word.size() < kColumn ? std::string(kColumn - word.size(), ' ') + word : word;
}

std::string RefusedText(const SweepOutcome& refusal) {
  std::string text;
  for (const auto& call : refusal.refused) text += (text.empty() ? "" : ", ") + call.Text();
  return text;
}

/// The lines that are not logged without the refusal, but for progress.
std::string UnusualLog(const SweptRequest& request, const SweepOutcome& refusal) {
  std::multiset<std::string> usual;
  for (const calls::LogLine& line : request.unhindered.log) usual.insert(line.text);
  std::string text;
  for (const calls::LogLine& line : refusal.log) {
    const auto known = usual.find(line.text);
    if (known != usual.end()) {
      usual.erase(known);
    } else if (line.level < kProgressLevel) {
      text += kIndent + "  log " + std::to_string(line.level) + ": " + Printable(line.text) + '\n';
    }
  }
  return text;
}

std::string Matrix(const SweptRequest& request) {
  std::string text;
  for (const SweepOutcome& refusal : request.refusals) {
    text += Column(refusal.crash.empty() ? refusal.result : refusal.crash) + Column(refusal.again) +
            Column(refusal.destroy) + "  " + RefusedText(refusal) + '\n' + UnusualLog(request, refusal);
    for (const diagnosis::Finding& finding : refusal.findings) {
      text += kIndent + "  left: " + finding.object + ": " + finding.problem + '\n';
    }
  }
  return text;
}

std::string WithoutDigits(std::string text) {
  text.erase(std::remove_if(text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c) != 0; }),
             text.end());
  return text;
}

}  // namespace

void SweepTally::Add(const SweptRequest& request) {
  ++requests;
  for (const SweepOutcome& refusal : request.refusals) {
    ++refusals;
    if (!refusal.findings.empty()) ++leave;
    if (request.FailsAgain(refusal)) ++fail_again;
    if (request.CannotBeDestroyed(refusal)) ++cannot_be_destroyed;
    if (!refusal.crash.empty()) ++crash;
  }
}

bool Alike::Repeats(const SweptRequest& request) {
  std::string shape = request.file + ':' + std::to_string(request.line) + ' ' + request.unhindered.result +
                      WithoutDigits(Matrix(request));
  if (!request.rounds.empty() && shape == shape_) return true;
  shape_ = std::move(shape);
  return false;
}

void SweepText::Swept(const SweptRequest& request) {
  if (alike_.Repeats(request)) {
    ++rounds_alike_;
    last_ = request.text;
    return;
  }
  EndAlike();
  const std::string matrix = Matrix(request);
  out_ << Printable(request.file) << ':' << request.line << ": " << Printable(request.text) << " => "
       << (request.unhindered.crash.empty() ? request.unhindered.result : request.unhindered.crash) << '\n';
  if (matrix.empty()) return;
  out_ << Column("result") << Column("again") << Column("destroy") << "  refused\n" << matrix;
}

void SweepText::EndAlike() {
  if (rounds_alike_ > 0) {
    out_ << "  and " << Counted(rounds_alike_, "request") << " alike, up to " << Printable(last_) << '\n';
  }
  rounds_alike_ = 0;
}

void SweepText::Ended(const std::string& file, const SweepTally& tally) {
  EndAlike();
  out_ << '\n'
       << Printable(file) << ": " << Counted(tally.requests, "request") << ", " << Counted(tally.refusals, "refusal")
       << ": " << tally.leave << " leave something, " << tally.fail_again << " fail again, "
       << tally.cannot_be_destroyed << " cannot be destroyed, " << tally.crash << " crash\n";
}

}  // namespace console
