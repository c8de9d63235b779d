#ifndef SCENARIO_FIELDS_H
#define SCENARIO_FIELDS_H

#include <map>
#include <string>
#include <vector>

#include "scenario/Tokens.h"

namespace scenario {

/// A statement's words, sorted by its form, for example "ID lim=PORT [caps=CAP,...]": words in capitals stand for one
/// word each, KEY=X for a field, brackets for what may be left out, and a last "X..." for one or more words.
class Fields {
 public:
  /// `words` are what follows `name`. Throws SyntaxError, with the form as its usage, when they do not fit.
  Fields(const Token& name, const std::vector<Token>& words, const std::string& form);

  /// The words that are no fields.
  const std::vector<Token>& words() const { return words_; }
  /// Whether there are that many of them.
  bool Has(std::size_t index) const { return index < words_.size(); }
  /// The value of a field; null when it was left out.
  const Token* Find(const std::string& key) const;

 private:
  std::vector<Token> words_;
  std::map<std::string, Token> values_;
};

}  // namespace scenario

#endif
