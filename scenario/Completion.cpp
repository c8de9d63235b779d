#include "scenario/Completion.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "scenario/Values.h"

namespace scenario {
namespace {

/// More values are of no help, and take longer to gather than a reader waits.
constexpr std::size_t kMostValues = 1000;

std::vector<softcard::Row> FewRows(const softcard::Card& card, const std::string& table) {
  return card.RowCount(table) > kMostValues ? std::vector<softcard::Row>() : card.Rows(table);
}

std::vector<std::string> Keys(const softcard::Card& card, const std::string& table) {
  std::vector<std::string> keys;
  for (const softcard::Row& row : FewRows(card, table)) keys.push_back(calls::Text(row.table->key.kind, row.key));
  return keys;
}

std::vector<std::string> PortNames(const softcard::Card& card, const std::vector<std::string>& tables) {
  std::vector<std::string> names;
  for (const std::string& table : tables) {
    for (const softcard::Row& row : FewRows(card, table)) {
      names.push_back(calls::Text(row.table->columns[0].kind, row.values[0]));
    }
  }
  return names;
}

/// What a form's "ID" or "PORT" can be. `statement` is its name.
std::vector<std::string> ValuesOf(const std::string& kind, const std::string& statement, const softcard::Card& card) {
  const bool of_vlan = statement.find("-vlan") != std::string::npos;
  if (kind == "ID") return Keys(card, "destinations");
  if (kind == "PORT") return PortNames(card, {"ports", "lags"});
  if (kind == "LAG") return PortNames(card, {"lags"});
  if (kind == "VRF") return Keys(card, "vrfs");
  if (kind == "INTF") return Keys(card, "intfs");
  if (kind == "PREFIX") return Keys(card, "routes");
  if (kind == "LABEL" && statement.find("label") != std::string::npos) return Keys(card, "labels");
  if (kind == "TABLE") return softcard::Card::TableNames();
  if (kind == "FUNCTION") return FunctionNames(true);
  if (kind == "RESULT") return NamesOf(kStatuses);
  if (kind == "CAPABILITY") return NamesOf(of_vlan ? kVlanCapabilities : kMplsCapabilities);
  if (kind == "ACTION") return NamesOf(kActions);
  return {};
}

/// The line's words; what quotes hold together counts as one, closed or not.
std::vector<std::string> WordsOfLine(std::string_view line) {
  std::vector<std::string> words = {""};
  bool quoted = false;
  for (const char c : line) {
    if (c == '"') quoted = !quoted;
    if ((c == ' ' || c == '\t') && !quoted) {
      if (!words.back().empty()) words.emplace_back();
    } else {
      words.back() += c;
    }
  }
  return words;
}

/// What the name of a statement goes on with: of "show changes" behind "show" the second word.
std::vector<std::string> NamesBehind(const Language& language, const std::vector<std::string>& before) {
  std::vector<std::string> names;
  const auto add = [&names](std::string name) {
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(std::move(name));
  };
  for (const Statement& statement : language.statements()) {
    const std::string& name = statement.form.name();
    const std::size_t blank = name.find(' ');
    if (before.empty()) {
      add(name.substr(0, blank));
    } else if (before.size() == 1 && blank != std::string::npos && name.substr(0, blank) == before[0]) {
      add(name.substr(blank + 1));
    }
  }
  return names;
}

/// The form of the statement or expectation that the words are of, and how many of them are its name.
struct Found {
  const Form* form = nullptr;
  std::size_t name_words = 1;
};
Found FindForm(const Language& language, const std::vector<std::string>& words) {
  if (words[0] == "expect") {
    const std::size_t at = words.size() > 1 && words[1] == "no" ? 2 : 1;
    for (const Expectation& expectation : language.expectations()) {
      if (words.size() > at && expectation.name == words[at]) return {&expectation.form, at + 1};
    }
    return {};
  }
  const Statement* const longer = words.size() > 1 ? language.Find(words[0] + ' ' + words[1]) : nullptr;
  const Statement* const statement = longer ? longer : language.Find(words[0]);
  return {statement ? &statement->form : nullptr, longer ? std::size_t{2} : 1};
}

std::vector<std::string> ExpectationNames(const Language& language, bool negated) {
  std::vector<std::string> names;
  for (const Expectation& expectation : language.expectations()) {
    if (!negated || expectation.negatable) names.push_back(expectation.name);
  }
  if (!negated) names.emplace_back("no");
  return names;
}

/// A form's alternatives, each as a form of its own.
std::vector<Form> Alternatives(const Form& form) {
  if (!form.has_alternatives()) return {form};
  std::vector<Form> alternatives;
  std::string rest = form.usage().substr(form.name().size() + 1);
  for (bool is_last = false; !is_last;) {
    const std::size_t bar = rest.find(" | ");
    is_last = bar == std::string::npos;
    alternatives.emplace_back(form.name(), rest.substr(0, bar));
    if (!is_last) rest = rest.substr(bar + 3);
  }
  return alternatives;
}

bool IsLiteral(const Form::Part& part) { return std::islower(static_cast<unsigned char>(part.text[0])) != 0; }

std::vector<std::string> ColumnsOf(const std::string& name) {
  std::vector<std::string> columns;
  for (const softcard::TableDescription* table : softcard::Card::TableDescriptions()) {
    if (table->name != name) continue;
    columns.push_back(std::string(table->key.name) + '=');
    for (int i = 0; i < table->column_count(); ++i) columns.push_back(std::string(table->columns[i].name) + '=');
  }
  return columns;
}

/// The fields that the form has and the words behind its name do not, and what the word can be whose turn it is.
std::vector<std::string> Parts(const Form& form, const std::vector<std::string>& words, const softcard::Card& card) {
  std::vector<std::string> plain, fields, parts;
  for (const std::string& word : words) {
    if (word.find('=') == std::string::npos) {
      plain.push_back(word);
    } else {
      fields.push_back(word);
    }
  }
  const auto add = [&parts](const std::vector<std::string>& more) {
    parts.insert(parts.end(), more.begin(), more.end());
  };
  std::size_t place = 0;
  for (const Form::Part& part : form.parts()) {
    if (part.key == "COLUMN") {
      if (!plain.empty()) add(ColumnsOf(plain[0]));
    } else if (!part.key.empty()) {
      const std::string beginning = part.key + '=';
      if (std::none_of(fields.begin(), fields.end(),
                       [&](const std::string& field) { return field.rfind(beginning, 0) == 0; })) {
        add({beginning});
      }
    } else if (part.repeated ? place <= plain.size() : place == plain.size()) {
      add(IsLiteral(part) ? std::vector<std::string>{part.value} : ValuesOf(part.value, form.name(), card));
      ++place;
    } else if (place++ < plain.size() && IsLiteral(part) && plain[place - 1] != part.value) {
      return {};  // of another alternative
    }
  }
  return parts;
}

}  // namespace

std::vector<std::string> Completions(const Language& language, const softcard::Card& card, std::string_view line) {
  std::vector<std::string> words = WordsOfLine(line);
  const std::string last = words.back();
  words.pop_back();

  std::vector<std::string> candidates = NamesBehind(language, words);
  std::string head;  // of the last word what stays as it is
  if (!words.empty()) {
    const bool negated = words.size() == 2 && words[1] == "no";
    if (words[0] == "expect" && (words.size() == 1 || negated)) candidates = ExpectationNames(language, negated);
    if (const Found found = FindForm(language, words); found.form) {
      const std::size_t equals = last.find('=');
      const Form::Part* const field = equals == std::string::npos ? nullptr : found.form->Find(last.substr(0, equals));
      const std::size_t comma = last.rfind(',');
      if (field) {
        head = last.substr(0, std::max(equals, comma == std::string::npos ? 0 : comma) + 1);
        candidates = ValuesOf(field->value, found.form->name(), card);
      } else {
        if (comma != std::string::npos) head = last.substr(0, comma + 1);
        const std::vector<std::string> behind(words.begin() + static_cast<std::ptrdiff_t>(found.name_words),
                                              words.end());
        for (const Form& form : Alternatives(*found.form)) {
          for (std::string& part : Parts(form, behind, card)) {
            if (std::find(candidates.begin(), candidates.end(), part) == candidates.end()) {
              candidates.push_back(std::move(part));
            }
          }
        }
      }
    }
  }
  std::vector<std::string> completions;
  for (const std::string& candidate : candidates) {
    if ((head + candidate).rfind(last, 0) == 0) completions.push_back(head + candidate);
  }
  return completions;
}

}  // namespace scenario
