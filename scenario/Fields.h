#ifndef SCENARIO_FIELDS_H
#define SCENARIO_FIELDS_H

#include <string_view>
#include <utility>
#include <vector>

#include "scenario/Form.h"
#include "scenario/Tokens.h"

namespace scenario {

/// A statement's words, sorted by its form. Refers to both.
class Fields {
 public:
  /// `words[from]` and what follows it are the fields; `words[0]` is the name that messages point at. Throws
  /// SyntaxError, with the form as its usage, when they do not fit. A form with alternatives takes all words as they
  /// are.
  Fields(const Form& form, const std::vector<Token>& words, std::size_t from);

  const Form& form() const { return form_; }
  const Token& name() const { return name_; }

  /// The words that are no fields.
  const std::vector<Token>& words() const { return words_; }
  /// Whether there are that many of them.
  bool Has(std::size_t index) const { return index < words_.size(); }
  /// The value of a field; null when it was left out.
  const Token* Find(std::string_view key) const;

 private:
  void Take(const Token& word);

  const Form& form_;
  const Token& name_;
  std::vector<Token> words_;
  std::vector<std::pair<std::string_view, Token>> values_;
};

}  // namespace scenario

#endif
