#include <algorithm>
#include <limits>

#include "scenario/Failure.h"
#include "scenario/Run.h"
#include "scenario/Statements.h"
#include "scenario/Values.h"

namespace scenario {
namespace {

using About = Expectation::About;

Check ReadRows(const Fields& fields, const Surroundings&) {
  const long long expected = ToNumber(fields.words()[1], "number of rows", 0, std::numeric_limits<unsigned>::max());
  return [table = ToTable(fields.words()[0]), expected](const Run& run) {
    const auto found = static_cast<long long>(run.card.RowCount(table));
    return Unless(found == expected, std::to_string(expected) + " rows in " + table, {std::to_string(found)});
  };
}

Check ReadTable(const Fields& fields, const Surroundings& around) {
  return [table = ToTable(fields.words()[0]), rows = around.block](const Run& run) {
    return UnlessEqual(rows, softcard::Texts(run.card.Rows(table)));
  };
}

/// The rows of all tables that requests fill, but for those of the tables in `except`.
Lines LeftOnCard(const softcard::Card& card, const Lines& except) {
  Lines left;
  for (const softcard::TableDescription* table : softcard::Card::TableDescriptions()) {
    if (table->origin != softcard::Origin::kMadeByRequests || card.RowCount(table->name) == 0) continue;
    if (std::find(except.begin(), except.end(), table->name) != except.end()) continue;
    const Lines rows = softcard::Texts(card.Rows(table->name));
    left.insert(left.end(), rows.begin(), rows.end());
  }
  return left;
}

Check ReadEmpty(const Fields& fields, const Surroundings&) {
  Lines except;
  if (const Token* tables = fields.Find("except")) {
    for (const Token& table : Elements(*tables)) except.push_back(ToTable(table));
  }
  return [except](const Run& run) {
    const Lines left = LeftOnCard(run.card, except);
    return Unless(left.empty(), "nothing on the card", left);
  };
}

}  // namespace

void AddCardExpectations(Language& language) {
  language.AddExpectation("rows", "TABLE NUMBER", "How many rows a table has", About::kCard, Expectation::kPlain,
                          ReadRows);
  language.AddExpectation("table", "TABLE", "Exactly these rows", About::kCard, Expectation::kHasBlock, ReadTable);
  language.AddExpectation("empty", "[except=TABLE,...]", "That nothing is left of what requests have made",
                          About::kCard, Expectation::kPlain, ReadEmpty);
}

}  // namespace scenario
