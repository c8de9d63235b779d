#include "softcard/Card.h"

#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include "softcard/tables/Destinations.h"

namespace softcard {
namespace {

/// A table of the card as everybody sees it.
struct ShownTable {
  const TableDescription* description;
  std::vector<Row> (*rows)(const Card& card);
  std::size_t (*count)(const Card& card);
};

template <auto kTable>
ShownTable Shown() {
  using Table = std::remove_reference_t<decltype(std::declval<Tables&>().*kTable)>;
  return {&Table::kDescription, [](const Card& card) { return (card.tables().*kTable).Rows(); },
          [](const Card& card) { return (card.tables().*kTable).rows().size(); }};
}

const ShownTable kShownTables[] = {
    Shown<&Tables::intfs>(),
    {&EgressTable::kDescription, [](const Card& card) { return card.tables().egresses.Rows(card.tables().ports); },
     [](const Card& card) { return card.tables().egresses.rows().size(); }},
    Shown<&Tables::initiators>(),
    Shown<&Tables::stations>(),
    Shown<&Tables::associations>(),
    Shown<&Tables::vrfs>(),
    Shown<&Tables::protocol>(),
    Shown<&Tables::switch_controls>(),
    {&Ports::kPortDescription, [](const Card& card) { return card.tables().ports.PortRows(); },
     [](const Card& card) { return card.tables().ports.port_count(); }},
    {&Ports::kLagDescription, [](const Card& card) { return card.tables().ports.LagRows(); },
     [](const Card& card) { return card.tables().ports.lag_count(); }},
    {&kDestinationDescription,
     [](const Card& card) { return softcard::Rows(card.common().destination_id_correlators); },
     [](const Card& card) { return card.common().destination_id_correlators.size(); }},
    {&RouteTable::kDescription, [](const Card& card) { return card.tables().routes.Rows(); },
     [](const Card& card) { return std::size_t{card.tables().routes.count()}; }},
    {&LabelTable::kDescription, [](const Card& card) { return card.tables().labels.Rows(card.tables().ports); },
     [](const Card& card) { return std::size_t{card.tables().labels.count()}; }},
    {&AttachTable::kDescription, [](const Card& card) { return card.tables().attachments.Rows(card.tables().ports); },
     [](const Card& card) { return card.tables().attachments.rows().size(); }},
    {&LagTable::kDescription, [](const Card& card) { return card.tables().lags.Rows(card.tables().ports); },
     [](const Card& card) { return card.tables().lags.rows().size(); }},
    {&Counters::kDescription, [](const Card& card) { return card.counters().Rows(card.tables().ports); },
     [](const Card& card) { return card.counters().row_count(); }},
};

const ShownTable& FindTable(std::string_view name) {
  std::string names;
  for (const ShownTable& table : kShownTables) {
    if (name == table.description->name) return table;
    names += std::string(" ") + table.description->name;
  }
  throw std::invalid_argument("there is no table \"" + std::string(name) + "\"; the tables are:" + names);
}

}  // namespace

Card& Card::Get() {
  // Never destroyed: modules keep pointers into it until the process is gone.
  static Card* const card = new Card;
  return *card;
}

void Card::Reset(const CardDescription& description) {
  description_ = description;
  log_.Clear();
  faults_ = {};
  tables_ = Tables(description_);
  counters_ = {};
  for (const auto& row : common_.destination_id_correlators) delete &row.second;
  common_.destination_id_correlators.clear();
  common_.unit = description_.unit;
  tables_.ports.Fill(&common_);
}

std::vector<const TableDescription*> Card::TableDescriptions() {
  std::vector<const TableDescription*> descriptions;
  for (const ShownTable& table : kShownTables) descriptions.push_back(table.description);
  return descriptions;
}

std::vector<std::string> Card::TableNames() {
  std::vector<std::string> names;
  for (const ShownTable& table : kShownTables) names.emplace_back(table.description->name);
  return names;
}

std::vector<Row> Card::Rows(std::string_view table) const { return FindTable(table).rows(*this); }

std::size_t Card::RowCount(std::string_view table) const { return FindTable(table).count(*this); }

}  // namespace softcard
