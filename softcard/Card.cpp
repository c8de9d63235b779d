#include "softcard/Card.h"

#include <stdexcept>

#include "softcard/Funnel.h"

namespace softcard {
namespace {

std::vector<std::string> DestinationRows(const HalBcmCommon& common) {
  std::vector<std::string> lines;
  for (const auto& row : common.destination_id_correlators) {
    const DestinationIdCorrelator& record = row.second;
    // Callers know the id as unsigned.
    lines.push_back("destination " + Text(static_cast<unsigned>(row.first)) + ": " +
                    Fields(" ", "intf", record.intf_id, "egress", record.egress_id));
  }
  return lines;
}

struct ShownTable {
  const char* name;
  std::vector<std::string> (*rows)(const Card& card);
};
const ShownTable kShownTables[] = {
    {"intfs", [](const Card& card) { return card.tables().intfs.Rows(); }},
    {"egresses", [](const Card& card) { return card.tables().egresses.Rows(); }},
    {"initiators", [](const Card& card) { return card.tables().initiators.Rows(); }},
    {"stations", [](const Card& card) { return card.tables().stations.Rows(); }},
    {"associations", [](const Card& card) { return card.tables().associations.Rows(); }},
    {"vrfs", [](const Card& card) { return card.tables().vrfs.Rows(); }},
    {"protocol", [](const Card& card) { return card.tables().protocol.Rows(); }},
    {"switch", [](const Card& card) { return card.tables().switch_controls.Rows(); }},
    {"ports", [](const Card& card) { return card.tables().ports.PortRows(); }},
    {"lags", [](const Card& card) { return card.tables().ports.LagRows(); }},
    {"destinations", [](const Card& card) { return DestinationRows(card.common()); }},
};

}  // namespace

bool Unseen::active_ = false;

Card& Card::Get() {
  // Never destroyed: modules keep pointers into it until the process is gone.
  static Card* const card = new Card;
  return *card;
}

void Card::Reset(const CardDescription& description) {
  description_ = description;
  log_.Clear();
  faults_.Clear();
  tables_.emplace(description_);
  for (const auto& row : common_.destination_id_correlators) delete &row.second;
  common_.destination_id_correlators.clear();
  common_.unit = description_.unit;
  tables_->ports.Fill(&common_);
}

const std::vector<std::string>& Card::TableNames() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> all;
    for (const ShownTable& table : kShownTables) all.push_back(table.name);
    return all;
  }();
  return names;
}

std::vector<std::string> Card::Rows(std::string_view table) const {
  std::string names;
  for (const ShownTable& shown : kShownTables) {
    if (table == shown.name) return shown.rows(*this);
    names += std::string(" ") + shown.name;
  }
  throw std::invalid_argument("there is no table \"" + std::string(table) + "\"; the tables are:" + names);
}

}  // namespace softcard
