#include "console/shell/Help.h"

#include <vector>

#include "scenario/Suggestion.h"

namespace console {
namespace {

struct Item {
  std::string form;
  std::string help;
};

/// Everything that a line can be, expectations last.
std::vector<Item> Items(const scenario::Language& language) {
  std::vector<Item> items;
  for (const scenario::Statement& statement : language.statements()) {
    if (statement.kind != scenario::Kind::kExpectation) items.push_back({statement.form.usage(), statement.help});
  }
  for (const scenario::Expectation& expectation : language.expectations()) {
    items.push_back({expectation.form.usage(), expectation.help});
    if (expectation.negatable) items.push_back({expectation.no_form.usage(), "The contrary"});
  }
  return items;
}

bool BeginsWith(const std::string& form, const std::string& words) {
  return form.rfind(words, 0) == 0 && (form.size() == words.size() || form[words.size()] == ' ');
}

}  // namespace

std::string Help(const scenario::Language& language, const std::string& words) {
  std::string text;
  const std::vector<Item> items = Items(language);
  for (const Item& item : items) {
    if (words.empty() || BeginsWith(item.form, words)) text += "  " + item.form + "\n      " + item.help + '\n';
  }
  if (!text.empty()) return text;
  std::vector<std::string> names;
  for (const scenario::Statement& statement : language.statements()) names.push_back(statement.form.name());
  return "there is no statement " + scenario::Quoted(words) + scenario::Suggest(words, names) + '\n';
}

}  // namespace console
