#include "scenario/Chain.h"
#include "scenario/Run.h"
#include "scenario/Statements.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

std::vector<std::string> ReadTables(const Fields& fields) {
  std::vector<std::string> tables;
  for (const Token& word : fields.words()) {
    for (std::string& table : ToTables(word)) tables.push_back(std::move(table));
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
