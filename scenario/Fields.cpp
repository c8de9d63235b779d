#include "scenario/Fields.h"

#include <algorithm>
#include <sstream>

#include "scenario/Suggestion.h"
#include "scenario/SyntaxError.h"

namespace scenario {
namespace {

/// A part of a form.
struct Part {
  std::string text;  ///< as shown: "lim=PORT"
  std::string key;   ///< empty for a word
  bool optional;
  bool repeated;
};

std::vector<Part> ReadForm(const std::string& form) {
  std::vector<Part> parts;
  std::istringstream stream(form);
  for (std::string text; stream >> text;) {
    const bool optional = text.front() == '[';
    if (optional) text = text.substr(1, text.size() - 2);
    const std::size_t equals = text.find('=');
    const bool word = equals == std::string::npos;
    parts.push_back({text, word ? "" : text.substr(0, equals), optional, word && text.back() == '.'});
  }
  return parts;
}

/// Forms are few and scenarios long: each is read once.
const std::vector<Part>& PartsOf(const std::string& form) {
  static std::map<std::string, std::vector<Part>> forms;
  const auto known = forms.find(form);
  return known != forms.end() ? known->second : forms.emplace(form, ReadForm(form)).first->second;
}

}  // namespace

Fields::Fields(const Token& name, const std::vector<Token>& words, const std::string& form) {
  const std::string usage = name.text + (form.empty() ? "" : " ") + form;
  const auto fail = [&](const Token& where, const std::string& message) {
    throw SyntaxError{where.offset, message, usage};
  };

  const std::vector<Part>& parts = PartsOf(form);
  std::vector<std::string> keys;
  std::size_t word_parts = 0;
  bool repeated = false;
  for (const Part& part : parts) {
    if (!part.key.empty()) keys.push_back(part.key);
    word_parts += part.key.empty();
    repeated = repeated || part.repeated;
  }

  for (const Token& word : words) {
    const std::size_t equals = word.quoted ? std::string::npos : word.text.find('=');
    if (equals == std::string::npos) {
      if (words_.size() == word_parts && !repeated) fail(word, "unexpected " + Quoted(word.text));
      words_.push_back(word);
      continue;
    }
    const std::string key = word.text.substr(0, equals);
    if (std::find(keys.begin(), keys.end(), key) == keys.end()) {
      fail(word, Quoted(name.text) + " has no field " + Quoted(key) + (keys.empty() ? "" : Suggest(key, keys)));
    }
    const Token value{word.text.substr(equals + 1), word.offset + equals + 1};
    if (!values_.emplace(key, value).second) fail(word, key + "= is given twice");
  }

  std::size_t needed_words = 0;
  for (const Part& part : parts) {
    const bool missing = part.key.empty() ? words_.size() < ++needed_words : values_.count(part.key) == 0;
    if (missing && !part.optional) fail(name, Quoted(name.text) + " needs " + part.text);
  }
}

const Token* Fields::Find(const std::string& key) const {
  const auto found = values_.find(key);
  return found == values_.end() ? nullptr : &found->second;
}

}  // namespace scenario
