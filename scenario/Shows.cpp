#include "scenario/Run.h"
#include "scenario/Statements.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

std::vector<std::string> ReadTables(const Fields& fields) {
  std::vector<std::string> tables;
  for (const Token& word : fields.words()) {
    if (word.text == "all") {
      for (const softcard::TableDescription* table : softcard::Card::TableDescriptions()) {
        if (table->origin != softcard::Origin::kGiven) tables.emplace_back(table->name);
      }
    } else {
      tables.push_back(ToTable(word));
    }
  }
  return tables;
}

}  // namespace

void AddShows(Language& language) {
  language.Add("show", "TABLE...", "Shows tables of the card; all is all but ports and lags", Kind::kShow,
               [](const Fields& fields, const Surroundings&) {
                 return [tables = ReadTables(fields)](const Run& run) {
                   Shown shown;
                   for (const std::string& table : tables) shown.tables.push_back({table, run.card.Rows(table)});
                   return shown;
                 };
               });
  language.Add("say", "[TEXT]", "Prints a heading", Kind::kSay, [](const Fields& fields, const Surroundings&) {
    return [said = Said{fields.Has(0) ? std::string(fields.words()[0].text) : ""}](Run&) { return said; };
  });
}

}  // namespace scenario
