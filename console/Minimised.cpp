#include "console/Minimised.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <regex>
#include <stdexcept>
#include <utility>
#include <vector>

#include "console/Processes.h"
#include "diagnosis/Minimise.h"
#include "recorder/Scenario.h"
#include "scenario/Run.h"
#include "scenario/Scenario.h"
#include "softcard/LimId.h"

namespace console {
namespace {

constexpr std::size_t kMostTries = 20000;
constexpr unsigned kSecondsOfATry = 60;

/// Ids are the card's to choose, and are others when other requests came before.
std::string WithoutIds(const std::string& line) {
  static const std::regex ids(
      R"((intf[= ]|intf id\(|egress=|updated it to |(?:CreateIntf|UpdateIntf|CreateEgress)\(.*\) = )\d+)");
  return std::regex_replace(line, ids, "$1*");
}

/// Keeps what a run says of expectations that do not hold, and of faults that never happen: "LINE TEXT", a line each.
class Failures : public scenario::Observer {
 public:
  void Took(const scenario::Step& step) override {
    const auto* const checked = std::get_if<scenario::Checked>(&step.content);
    if (!checked || !checked->failure) return;
    for (const std::string& line : *checked->failure) text += std::to_string(step.line) + ' ' + WithoutIds(line) + '\n';
  }
  void Ended(const std::string&, const scenario::Tally&) override {}

  std::string text;
};

/// A text of scenario lines and where its requests are.
struct Written {
  std::string text;
  std::vector<std::size_t> lines;  ///< before each request
};

/// What a request does that comes last.
struct Shown {
  std::string failures;    ///< of what it is expected to do
  std::size_t others = 0;  ///< lines about faults of the requests before it
  std::string crash;

  bool DiffersNot() const { return failures.empty() && crash.empty(); }
};

std::size_t CountLines(const std::string& text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

bool WasRefused(const recorder::Step& step) {
  return step.result.rfind('-', 0) == 0 || step.result.rfind("threw", 0) == 0;
}

class Minimiser {
 public:
  Minimiser(CardRecording* recording, const scenario::Language& language, softcard::Card& card)
      : language_(language), card_(card), header_(recording->header()), terms_(recording->terms()) {
    while (auto entry = recording->Next()) entries_.push_back(*std::move(entry));
    for (const recorder::Entry& entry : entries_) {
      if (const auto* step = std::get_if<recorder::Step>(&entry)) steps_.push_back(step);
    }
  }

  /// The place among the steps.
  std::size_t Target(std::optional<std::size_t> line) const {
    const auto is_it = [&](const recorder::Step* step) { return line ? step->line == *line : WasRefused(*step); };
    if (!line) {
      if (const auto differs = FirstThatDiffers()) return *differs;
    }
    const auto found = std::find_if(steps_.begin(), steps_.end(), is_it);
    if (found != steps_.end()) return static_cast<std::size_t>(found - steps_.begin());
    if (line) throw std::runtime_error("has no request in line " + std::to_string(*line));
    throw std::runtime_error(
        "has no request that was refused, and on the software card all do as recorded; name one by --line");
  }

  std::string Minimised(std::size_t target) const {
    std::vector<std::size_t> before(target);
    for (std::size_t i = 0; i < target; ++i) before[i] = i;
    const Shown whole = Try(before, target);
    const bool shows_progress = isatty(STDERR_FILENO) != 0;
    std::size_t tries = 0;
    const auto minimised = diagnosis::Minimise(target, kMostTries, [&](const std::vector<std::size_t>& kept) {
      if (shows_progress) std::cerr << "\r\033[K" << ++tries << " tries, " << kept.size() << " requests" << std::flush;
      const Shown outcome = Try(kept, target);
      return outcome.failures == whole.failures && outcome.crash == whole.crash && outcome.others <= whole.others;
    });
    if (shows_progress) std::cerr << "\r\033[K" << std::flush;
    return Write(minimised.kept, target, Summary(minimised, target, whole)).text;
  }

 private:
  std::string Summary(const diagnosis::Minimised& minimised, std::size_t target, const Shown& whole) const {
    const recorder::Step& step = *steps_[target];
    return "Of " + std::to_string(target) + " requests before line " + std::to_string(step.line) + "'s, " +
           std::to_string(minimised.kept.size()) +
           " are kept: after them it does what it does after all of them on a " + "software card, " +
           (whole.DiffersNot() ? "which is as recorded." : "which is not as recorded.") +
           (minimised.is_minimal ? "" : " Some of them may not be needed: the tries were too many.");
  }

  /// Requests of `kept` without expectations, and `target` with its own.
  Written Write(const std::vector<std::size_t>& kept, std::size_t target, const std::string& summary) const {
    std::vector<bool> is_kept(steps_.size(), false);
    for (const std::size_t i : kept) is_kept[i] = true;
    is_kept[target] = true;
    return Write([&](std::size_t i) { return is_kept[i]; }, [&](std::size_t i) { return i == target; }, target,
                 summary);
  }

  template <typename IsKept, typename Expects>
  Written Write(const IsKept& is_kept, const Expects& expects, std::size_t last, const std::string& summary) const {
    recorder::ScenarioWriter writer(softcard::kLimIdNames);
    Written written;
    writer.Begin(header_);
    if (!summary.empty()) writer.Comment(summary);
    if (const std::string others = terms_.Others(); !others.empty()) writer.Comment(others);
    if (const std::string line = terms_.CardLine(); !line.empty()) writer.Line(line);
    std::size_t step = 0;
    for (const recorder::Entry& entry : entries_) {
      if (std::holds_alternative<recorder::Standing>(entry)) writer.Write(entry);
      if (!std::holds_alternative<recorder::Step>(entry)) continue;
      written.lines.push_back(CountLines(writer.text()));
      if (is_kept(step)) writer.Write(entry, expects(step));
      if (step++ == last) break;
    }
    written.text = writer.text();
    return written;
  }

  Shown Try(const std::vector<std::size_t>& kept, std::size_t target) const {
    const Written written = Write(kept, target, "");
    const Ending ending = Run(written.text);
    Shown outcome{"", 0, ending.crash};
    ForEachFailure(ending.report, [&](std::size_t line, const std::string& text) {
      if (line > written.lines.back()) {
        outcome.failures += text + '\n';
      } else {
        ++outcome.others;
      }
    });
    return outcome;
  }

  std::optional<std::size_t> FirstThatDiffers() const {
    if (steps_.empty()) return std::nullopt;
    const auto all = [](std::size_t) { return true; };
    const Written written = Write(all, all, steps_.size() - 1, "");
    std::optional<std::size_t> first;
    ForEachFailure(Run(written.text).report, [&](std::size_t line, const std::string&) {
      const auto behind = std::lower_bound(written.lines.begin(), written.lines.end(), line);
      const auto step = static_cast<std::size_t>(behind - written.lines.begin()) - 1;
      first = std::min(first.value_or(step), step);
    });
    return first;
  }

  template <typename Work>
  static void ForEachFailure(const std::string& report, const Work& work) {
    for (std::size_t begin = 0; begin < report.size();) {
      const std::size_t end = report.find('\n', begin);
      const std::string line = report.substr(begin, end - begin);
      const std::size_t blank = line.find(' ');
      work(std::stoul(line), line.substr(blank + 1));
      begin = end + 1;
    }
  }

  Ending Run(const std::string& text) const {
    Processes processes(kSecondsOfATry);
    if (processes.Begin()) {
      Failures failures;
      auto parsed = scenario::ParseScenario(language_, "recording", text);
      // What cannot be told by a scenario's lines is a failure like any other.
      for (const scenario::Complaint& complaint : parsed.complaints) {
        failures.text += std::to_string(complaint.line) + ' ' + complaint.message + '\n';
      }
      if (parsed.complaints.empty()) scenario::RunScenario(parsed.scenario, card_, {}, failures);
      processes.End(failures.text);
    }
    return processes.Next();
  }

  const scenario::Language& language_;
  softcard::Card& card_;
  const recorder::Header header_;
  const diagnosis::CardTerms& terms_;
  std::vector<recorder::Entry> entries_;
  std::vector<const recorder::Step*> steps_;
};

}  // namespace

std::string MinimisedScenario(CardRecording* recording, std::optional<std::size_t> line,
                              const scenario::Language& language, softcard::Card& card) {
  const Minimiser minimiser(recording, language, card);
  return minimiser.Minimised(minimiser.Target(line));
}

}  // namespace console
