#include "scenario/Fields.h"

#include "scenario/Suggestion.h"
#include "scenario/SyntaxError.h"

namespace scenario {
namespace {

std::string SuggestKey(std::string_view key, const Form& form) {
  std::vector<std::string> keys;
  for (const Form::Part& part : form.parts()) {
    if (!part.key.empty()) keys.push_back(part.key);
  }
  return keys.empty() ? "" : Suggest(key, keys);
}

/// For a text or a call that was pasted as it is.
std::string SuggestQuotes(const Form& form) {
  for (const Form::Part& part : form.parts()) {
    if (part.value == "TEXT" || part.value == "CALL") return "; quotes keep a " + part.value + " together";
  }
  return "";
}

}  // namespace

Fields::Fields(const Form& form, const std::vector<Token>& words, std::size_t from) : form_(form), name_(words[0]) {
  words_.reserve(words.size());
  values_.reserve(words.size());
  for (std::size_t i = from; i < words.size(); ++i) Take(words[i]);

  std::size_t needed_words = 0;
  for (const Form::Part& part : form.parts()) {
    const bool missing = part.key.empty() ? words_.size() < ++needed_words : Find(part.key) == nullptr;
    if (missing && !part.optional) {
      throw SyntaxError{name_.offset, Quoted(form.name()) + " needs " + part.text, form.usage()};
    }
  }
}

void Fields::Take(const Token& word) {
  const bool as_it_is = word.quoted || form_.has_alternatives();
  const std::size_t equals = as_it_is ? std::string_view::npos : word.text.find('=');
  if (equals == std::string_view::npos) {
    if (words_.size() >= form_.most_words() && !form_.has_alternatives()) {
      throw SyntaxError{word.offset, "unexpected " + Quoted(word.text) + SuggestQuotes(form_), form_.usage()};
    }
    words_.push_back(word);
    return;
  }
  const std::string_view key = word.text.substr(0, equals);
  if (form_.Find(key) == nullptr) {
    throw SyntaxError{
        word.offset,
        Quoted(form_.name()) + " has no field " + Quoted(key) + SuggestKey(key, form_) + SuggestQuotes(form_),
        form_.usage()};
  }
  if (Find(key) != nullptr) throw SyntaxError{word.offset, std::string(key) + "= is given twice", form_.usage()};
  values_.emplace_back(key, Behind(word, equals + 1));
}

const Token* Fields::Find(std::string_view key) const {
  for (const auto& [given, value] : values_) {
    if (given == key) return &value;
  }
  return nullptr;
}

}  // namespace scenario
