#ifndef SCENARIO_SESSION_H
#define SCENARIO_SESSION_H

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "scenario/Runner.h"
#include "scenario/Scenario.h"

namespace scenario {

/// Lines that come one after another, kept until what they begin has ended: a loop's, an expectation's.
class Collector {
 public:
  /// Of lines that are kept, in bytes.
  static constexpr std::size_t kMost = 1 << 20;

  /// `name` is what messages show in the place of a file's.
  Collector(const Language& language, std::string name) : language_(language), name_(std::move(name)) {}

  /// Takes a line, without its end. Whether all lines that are kept make a whole. Throws std::runtime_error when they
  /// are too long; none is kept then.
  bool Add(std::string_view line);
  /// Hands the lines out, numbered as they came, and keeps none.
  SourceText Take();

  bool empty() const { return kept_.empty(); }

 private:
  void Open(std::string_view line);

  const Language& language_;
  const std::string name_;
  std::string kept_;
  unsigned lines_ = 0;       ///< that came
  unsigned first_line_ = 1;  ///< of those that are kept
  unsigned loops_ = 0;       ///< that have not ended
  bool in_block_ = false;
};

/// What became of lines.
struct Answer {
  std::vector<Complaint> complaints{};  ///< not empty: nothing was done
  std::size_t more_complaints = 0;      ///< that are not among them
  std::string error{};                  ///< not empty: what was not written, a file for instance; the rest was not done
  unsigned long failed = 0;             ///< as in Tally

  bool unusable() const { return !complaints.empty() || !error.empty(); }
  /// Why it is unusable, in lines as a scenario's errors; empty when it is not.
  std::string Why() const;
};

/// A run that goes on for as long as lines come: from a socket, a terminal, a program. There is one at a time, as there
/// is one module.
class Session {
 public:
  /// `watchers` are told every step from the beginning on; others from where a line first needs them.
  Session(const Language& language, softcard::Card& card, const Options& options, std::set<Observer*> watchers = {});

  /// Empties the card and starts the module, unless lines have done so. After it no line describes the card.
  void Begin(Observer& observer);

  /// Checks all lines and then does them, telling the observer each step; does nothing when one of them is unusable.
  Answer Do(SourceText text, Observer& observer, const Counters& definitions = {},
            std::size_t most_statements = kMostStatements);

  const softcard::Card& card() const { return card_; }
  Tally tally() const { return runner_ ? runner_->tally() : Tally{}; }

 private:
  void Do(std::unique_ptr<Scenario> scenario, Observer& observer);

  const Language& language_;
  softcard::Card& card_;
  Options options_;
  Past past_;
  std::optional<Runner> runner_;
  bool running_ = false;            ///< the module is
  std::unique_ptr<Scenario> done_;  ///< last
  std::unique_ptr<Scenario> kept_;  ///< holds the line of the last request, unless that is in what was done last
  const SourceLine* kept_line_ = nullptr;
};

}  // namespace scenario

#endif
