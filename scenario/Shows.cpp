#include "scenario/Chain.h"
#include "scenario/RowFilter.h"
#include "scenario/Run.h"
#include "scenario/Statements.h"
#include "scenario/Suggestion.h"
#include "scenario/SyntaxError.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

bool IsFilter(const Token& word) { return word.text.find('=') != std::string_view::npos; }

/// Never null for a name that ToTables() has read.
const softcard::TableDescription* DescriptionOf(const std::string& name) {
  for (const softcard::TableDescription* table : softcard::Card::TableDescriptions()) {
    if (table->name == name) return table;
  }
  return nullptr;
}

std::vector<std::string> ReadTables(const Fields& fields) {
  std::vector<std::string> tables;
  for (const Token& word : fields.words()) {
    if (IsFilter(word)) continue;
    for (std::string& table : ToTables(word)) tables.push_back(std::move(table));
  }
  if (tables.empty()) throw SyntaxError{fields.name().offset, "\"show\" needs TABLE...", fields.form().usage()};
  return tables;
}

/// "egresses port=eth5 drop=true": a row fits when it has all of these values.
std::vector<RowFilter> ReadFilters(const Fields& fields, const std::vector<std::string>& tables) {
  std::vector<RowFilter> filters;
  for (const Token& word : fields.words()) {
    if (!IsFilter(word)) continue;
    if (tables.size() != 1) throw SyntaxError{word.offset, "values are asked of one table", fields.form().usage()};
    filters.push_back(RowFilter::Read(*DescriptionOf(tables[0]), word));
  }
  return filters;
}

}  // namespace

void AddShows(Language& language) {
  language.Add(
      "show", "TABLE... | TABLE COLUMN=VALUE...",
      "Shows tables of the card, all is all but ports and lags; or those rows of a table that have these values",
      Kind::kShow, [](const Fields& fields, const Surroundings&) {
        auto tables = ReadTables(fields);
        auto filters = ReadFilters(fields, tables);
        return [tables = std::move(tables), filters = std::move(filters)](const Run& run) {
          Shown shown;
          for (const std::string& table : tables) {
            shown.tables.push_back({table, Filtered(run.card.Rows(table), filters)});
          }
          return shown;
        };
      });
  language.Add("show destination", "ID", "Shows what every packet to a destination goes through", Kind::kShow,
               [](const Fields& fields, const Surroundings&) {
                 return
                     [id = ToUnsigned(fields.words()[0], "id")](const Run& run) { return ShownChain{Chain(run, id)}; };
               });
  language.Add("say", "TEXT", "Prints a heading", Kind::kSay, [](const Fields& fields, const Surroundings&) {
    return [said = Said{std::string(fields.words()[0].text)}](Run&) { return said; };
  });
}

}  // namespace scenario
