#ifndef SCENARIO_LANGUAGE_H
#define SCENARIO_LANGUAGE_H

#include <deque>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "scenario/Fields.h"
#include "scenario/Form.h"
#include "scenario/Step.h"
#include "softcard/CardDescription.h"

namespace scenario {

struct Run;

/// What a statement does when its turn comes.
using Action = std::function<Content(Run&)>;
/// Nothing when an expectation holds for the last request or packet and the card as they are.
using Check = std::function<std::optional<Failure>(const Run&)>;

/// What a statement is read with, beside its words.
struct Surroundings {
  const softcard::CardDescription& card;
  const std::vector<std::string>& block;  ///< the lines up to its `end`
  std::set<std::string>& clients;         ///< that the lines so far have registered
  /// For statements that have to know what happens before them: are told each step of the scenario's run, ahead of its
  /// own observer. They live as long as the language is used.
  std::set<Observer*>& watchers;
  bool negated = false;  ///< "expect no ..."
};

/// A statement of the language. Its form is written here and nowhere else.
struct Statement {
  using Read = std::function<Action(const Fields&, const Surroundings&)>;

  Form form;
  std::string help;  ///< what it does, in a line
  Kind kind;
  Read read{};  ///< throws SyntaxError; empty for what gives a scenario its structure
};

/// What `expect` is followed by.
struct Expectation {
  using Read = std::function<Check(const Fields&, const Surroundings&)>;
  enum class About { kStep, kModule, kResult, kPacket, kCard };
  enum Traits { kPlain = 0, kNegatable = 1, kHasBlock = 2 };

  std::string name;
  Form form;     ///< "expect rows TABLE NUMBER"
  Form no_form;  ///< "expect no log [LEVEL] [TEXT]"
  std::string help;
  About about;
  bool negatable;  ///< "expect no ...": nothing that fits may be there
  bool has_block;  ///< lines up to an `end` belong to it
  Read read;       ///< throws SyntaxError
};

/// A line that has been read.
struct ReadStatement {
  Kind kind{};
  std::optional<Expectation::About> about{};  ///< of an expectation
  Action action;
};

/// The statements that scenarios are made of. Rooms add theirs; what they add may refer to the language and lives as
/// long as it does.
class Language {
 public:
  Language() = default;
  Language(const Language&) = delete;
  Language& operator=(const Language&) = delete;

  void Add(const std::string& name, const std::string& fields, std::string help, Kind kind, Statement::Read read = {});
  void AddExpectation(const std::string& name, const std::string& fields, std::string help, Expectation::About about,
                      int traits, Expectation::Read read);

  const std::deque<Statement>& statements() const { return statements_; }
  const std::deque<Expectation>& expectations() const { return expectations_; }
  /// Null when there is none of this name.
  const Statement* Find(std::string_view name) const;
  /// The statement that begins so: by two words, "show changes", ahead of one, "show".
  const Statement* Find(const std::vector<Token>& words) const;

  /// Whether a statement that begins so has lines of its own, up to an `end`.
  bool HasBlock(const std::vector<Token>& words) const;

  /// Reads any statement but those of structure. Throws SyntaxError.
  ReadStatement Read(const std::vector<Token>& words, const Surroundings& surroundings) const;

 private:
  ReadStatement ReadExpectation(const std::vector<Token>& words, const Surroundings& surroundings) const;
  const Expectation* FindExpectation(std::string_view name) const;

  std::deque<Statement> statements_;
  std::deque<Expectation> expectations_;
  std::unordered_map<std::string_view, const Statement*> by_name_;
};

/// The statements that this room knows.
void AddStandard(Language& language);

}  // namespace scenario

#endif
