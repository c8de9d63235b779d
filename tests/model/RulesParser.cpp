#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "tests/model/Rules.h"
#include "tests/model/Signatures.h"

namespace model {
namespace {

std::string_view Trim(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::vector<std::string_view> Split(std::string_view text, std::string_view separator) {
  std::vector<std::string_view> parts;
  while (true) {
    const auto end = text.find(separator);
    if (const auto part = Trim(text.substr(0, end)); !part.empty() || separator == "|") parts.push_back(part);
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + separator.size());
  }
}

int IndexOf(const std::vector<std::string>& names, std::string_view name) {
  const auto found = std::find(names.begin(), names.end(), name);
  return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

[[noreturn]] void Mistake(const std::string& what, std::string_view where) {
  throw std::logic_error("rules: " + what + " in \"" + std::string(where) + "\"");
}

}  // namespace

const Rules& Rules::Get() {
  static const Rules rules;
  return rules;
}

Rules::Rules() {
  for (const auto& object : kObjects) {
    for (const auto& field : kObjectFields) Declare(std::string(object).append(".").append(field));
  }
  for (const auto& record : kRecords) {
    for (const auto& field : kRecordFields) Declare(std::string(record).append(".").append(field));
  }

  const std::string text = std::string(kVlanRules) + kHostRules + kMplsRules + kTunnelRules;
  const auto lines = Split(text, "\n");
  for (const auto line : lines) {
    if (line.substr(0, 6) == "table ") table_names_.emplace_back(line.substr(6));
  }
  for (const auto line : lines) {
    if (line.substr(0, 6) == "table ") {
      tables_.emplace_back();
    } else {
      tables_.back().push_back(ParseLine(line));
    }
  }
}

int Rules::TableIndex(std::string_view name) const {
  const int index = IndexOf(table_names_, name);
  if (index < 0) Mistake("no table of that name", name);
  return index;
}

std::vector<std::string> Rules::Unreached() const {
  std::vector<std::string> lines;
  for (size_t i = 0; i < tables_.size(); ++i) {
    for (const Line& line : tables_[i]) {
      if (!line.taken) {
        lines.push_back(table_names_[i] + ", never taken: " + line.text);
      } else if (!line.failed && line.failure != Failure::kNever) {
        lines.push_back(table_names_[i] + ", never failed: " + line.text);
      }
    }
  }
  return lines;
}

int Rules::Slot(std::string_view name) const {
  const int slot = IndexOf(slot_names_, name);
  if (slot < 0) Mistake("no variable of that name", name);
  return slot;
}

int Rules::Declare(std::string_view name) {
  if (IndexOf(slot_names_, name) < 0) slot_names_.emplace_back(name);
  return Slot(name);
}

Line Rules::ParseLine(std::string_view line) {
  const auto columns = Split(line, "|");
  if (columns.size() != 3) Mistake("not three columns", line);
  Line parsed{};
  parsed.text = line;
  for (const auto condition : Split(columns[0], "&")) parsed.when.push_back(ParseCondition(condition));
  parsed.step = ParseStep(columns[1]);
  if (columns[2].empty()) return parsed;

  const auto colon = columns[2].find(": ");
  const auto style = columns[2].substr(0, colon);
  parsed.failure = style == "negative"  ? Failure::kNegative
                   : style == "nonzero" ? Failure::kNonzero
                   : style == "false"   ? Failure::kFalse
                   : style == "missing" ? Failure::kMissing
                                        : (Mistake("no such failure", line), Failure::kNever);
  for (const auto step : Split(columns[2].substr(colon + 2), " ; ")) parsed.then.push_back(ParseStep(step));
  return parsed;
}

Condition Rules::ParseCondition(std::string_view text) {
  const auto words = Split(text, " ");
  if (words.size() != 3) Mistake("not a comparison", text);
  return {ParseOperand(words[0]), std::string(words[1]), ParseOperand(words[2])};
}

Operand Rules::ParseOperand(std::string_view word) {
  char* end = nullptr;
  const std::string text(word);
  const long number = std::strtol(text.c_str(), &end, 10);
  if (*end == '\0') return {true, static_cast<int>(number)};
  return {false, Declare(word)};
}

Step Rules::ParseStep(std::string_view text) {
  auto words = Split(text, " ");
  Step step{};
  if (words.size() > 2 && words[1] == "=") {
    step.target = Declare(words[0]);
    words.erase(words.begin(), words.begin() + 2);
  }
  const auto operands_from = [&](size_t first) {
    for (size_t i = first; i < words.size(); ++i) step.operands.push_back(ParseOperand(words[i]));
  };
  const auto verb = words[0];
  if (verb == "log") {
    step.verb = Verb::kLog;
    step.operands = {ParseOperand(words[1])};
    step.text = ParseText(text.substr(6));
  } else if (verb == "throw") {
    step.verb = Verb::kThrow;
    step.text = ParseText(text.substr(6));
  } else if (verb == "run" || verb == "each") {
    step.verb = verb == "run" ? Verb::kRun : Verb::kEach;
    step.subject = TableIndex(words[1]);
    operands_from(2);
  } else if (verb == "find" || verb == "object") {
    step.verb = verb == "find" ? Verb::kFind : Verb::kObject;
    step.subject = Slot(std::string(words[1]) + ".found");
    operands_from(2);
  } else if (verb == "add") {
    step.verb = Verb::kAdd;
    step.target = Declare(words[1]);
    operands_from(2);
  } else if (verb == "store" || verb == "rewrite" || verb == "forget" || verb == "notify" || verb == "end") {
    step.verb = verb == "store"     ? Verb::kStore
                : verb == "rewrite" ? Verb::kRewrite
                : verb == "forget"  ? Verb::kForget
                : verb == "notify"  ? Verb::kNotify
                                    : Verb::kEnd;
    operands_from(1);
  } else if (step.subject = SignatureIndex(verb); step.subject >= 0) {
    step.verb = Verb::kCall;
    operands_from(1);
  } else if (words.size() == 1 && step.target >= 0) {
    step.verb = Verb::kSet;
    operands_from(0);
  } else {
    Mistake("no such step", text);
  }
  return step;
}

std::vector<Segment> Rules::ParseText(std::string_view text) {
  std::vector<Segment> segments;
  while (true) {
    const auto open = text.find('{');
    segments.push_back({std::string(text.substr(0, open)), "", {true, 0}});
    if (open == std::string_view::npos) return segments;
    const auto close = text.find('}');
    const auto words = Split(text.substr(open + 1, close - open - 1), " ");
    if (words.size() == 2) {
      segments.back().kind = words[0];
    } else {
      segments.back().kind = "number";
    }
    const auto what = words.back();
    segments.back().what =
        IndexOf(kObjects, what) >= 0 ? Operand{false, Slot(std::string(what) + ".found")} : ParseOperand(what);
    text.remove_prefix(close + 1);
  }
}

}  // namespace model
