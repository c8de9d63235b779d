#include "scenario/Language.h"

#include <utility>

#include "scenario/Suggestion.h"
#include "scenario/SyntaxError.h"

namespace scenario {

void Language::Add(const std::string& name, const std::string& fields, std::string help, Kind kind,
                   Statement::Read read) {
  const Statement& added =
      statements_.emplace_back(Statement{Form(name, fields), std::move(help), kind, std::move(read)});
  by_name_.emplace(added.form.name(), &added);
}

void Language::AddExpectation(const std::string& name, const std::string& fields, std::string help,
                              Expectation::About about, int traits, Expectation::Read read) {
  expectations_.push_back({name, Form("expect " + name, fields), Form("expect no " + name, fields), std::move(help),
                           about, (traits & Expectation::kNegatable) != 0, (traits & Expectation::kHasBlock) != 0,
                           std::move(read)});
}

namespace {

std::size_t WordsOf(std::string_view name) { return name.find(' ') == std::string_view::npos ? 1 : 2; }

}  // namespace

const Statement* Language::Find(std::string_view name) const {
  const auto found = by_name_.find(name);
  return found == by_name_.end() ? nullptr : found->second;
}

const Statement* Language::Find(const std::vector<Token>& words) const {
  const Statement* longer = nullptr;
  if (words.size() > 1) longer = Find(std::string(words[0].text).append(" ").append(words[1].text));
  return longer == nullptr ? Find(words[0].text) : longer;
}

const Expectation* Language::FindExpectation(std::string_view name) const {
  for (const Expectation& expectation : expectations_) {
    if (expectation.name == name) return &expectation;
  }
  return nullptr;
}

bool Language::HasBlock(const std::vector<Token>& words) const {
  const Statement* const statement = Find(words[0].text);
  if (statement == nullptr || statement->kind != Kind::kExpectation || words.size() < 2) return false;
  const Expectation* const expectation = FindExpectation(words[1].text);
  return expectation != nullptr && expectation->has_block;
}

ReadStatement Language::Read(const std::vector<Token>& words, const Surroundings& surroundings) const {
  const Statement* const statement = Find(words);
  if (statement == nullptr) {
    std::vector<std::string> names;
    for (const Statement& known : statements_) names.push_back(known.form.name());
    throw SyntaxError{words[0].offset, "unknown request " + Quoted(words[0].text) + Suggest(words[0].text, names)};
  }
  if (statement->kind == Kind::kExpectation) return ReadExpectation(words, surroundings);
  return {statement->kind,
          {},
          statement->read(Fields(statement->form, words, WordsOf(statement->form.name())), surroundings)};
}

ReadStatement Language::ReadExpectation(const std::vector<Token>& words, const Surroundings& surroundings) const {
  const bool negated = words.size() > 1 && words[1].text == "no";
  const std::size_t at = negated ? 2 : 1;
  const Expectation* const expectation = words.size() > at ? FindExpectation(words[at].text) : nullptr;
  if (expectation == nullptr || (negated && !expectation->negatable)) {
    std::vector<std::string> names;
    for (const Expectation& known : expectations_) {
      if (!negated || known.negatable) names.push_back(known.name);
    }
    if (words.size() == at) throw SyntaxError{words[0].offset, "what is expected is missing" + Suggest("", names)};
    const std::string beginning = negated ? "expect no " : "expect ";
    throw SyntaxError{words[at].offset, "nothing is expected by " + Quoted(beginning + std::string(words[at].text)) +
                                            Suggest(words[at].text, names)};
  }
  const Fields fields(negated ? expectation->no_form : expectation->form, words, at + 1);
  Check check = expectation->read(
      fields, {surroundings.card, surroundings.block, surroundings.clients, surroundings.watchers, negated});
  return {Kind::kExpectation, expectation->about, [check = std::move(check)](Run& run) { return Checked{check(run)}; }};
}

}  // namespace scenario
