#include "diagnosis/Users.h"

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "scenario/SyntaxError.h"
#include "softcard/tables/Destinations.h"

namespace diagnosis {
namespace {

using scenario::SyntaxError;
using softcard::TableDescription;

const TableDescription kUsage = {"usage",
                                 "table",
                                 softcard::Origin::kGiven,
                                 {"table", calls::Kind::kText},
                                 {{"used", calls::Kind::kNumber}, {"size", calls::Kind::kNumber}}};

}  // namespace

Users::Users(const scenario::Fields& fields) {
  const std::string& usage = fields.form().usage();
  const scenario::Token* value = nullptr;
  std::string column;
  for (const scenario::Form::Part& part : fields.form().parts()) {
    const scenario::Token* const given = fields.Find(part.key);
    if (given == nullptr) continue;
    if (value != nullptr) throw SyntaxError{given->offset, "one field is asked for at a time", usage};
    value = given;
    column = part.key;
  }
  if (value == nullptr) throw SyntaxError{fields.name().offset, "what is to be looked for is missing", usage};
  // Where a popped label's frame goes, and what a LAG is made of, are ports as well.
  const std::vector<std::string> columns =
      column == "port" ? std::vector<std::string>{"port", "to", "ports"} : std::vector<std::string>{column};
  for (const TableDescription* table : softcard::Card::TableDescriptions()) {
    if (table->origin == softcard::Origin::kGiven) continue;
    for (const std::string& name : columns) {
      const auto filter = scenario::RowFilter::Make(*table, name, *value);
      if (filter) filters_.push_back({table, *filter});
    }
  }
}

scenario::Shown Users::On(const softcard::Card& card) const {
  scenario::Shown shown;
  std::map<std::string_view, std::set<std::int64_t>> keys;  // of the rows that fit, by table
  for (const auto& [table, filter] : filters_) {
    std::vector<softcard::Row> rows;
    for (softcard::Row& row : card.Rows(table->name)) {
      if (filter.Fits(row)) rows.push_back(std::move(row));
    }
    for (const softcard::Row& row : rows) {
      if (const auto* key = std::get_if<std::int64_t>(&row.key)) keys[table->name].insert(*key);
    }
    const bool records = table == &softcard::kDestinationDescription;
    if (!rows.empty() && !records) shown.tables.push_back({table->name, std::move(rows)});
  }
  // An initiator goes by its interface.
  keys["intfs"].insert(keys["initiators"].begin(), keys["initiators"].end());
  std::vector<softcard::Row> holders;
  for (const auto& [id, record] : card.common().destination_id_correlators) {
    const bool holds = keys["intfs"].count(record.intf_id) + keys["egresses"].count(record.egress_id) > 0;
    if (holds) holders.push_back(softcard::MakeRow(id, record));
  }
  shown.tables.push_back({softcard::kDestinationDescription.name, std::move(holders)});
  return shown;
}

std::vector<softcard::Row> Usage(const softcard::Card& card) {
  const softcard::Tables& tables = card.tables();
  const std::pair<const char*, unsigned> sizes[] = {{"intfs", tables.intfs.size()},
                                                    {"egresses", tables.egresses.size()},
                                                    {"initiators", tables.initiators.size()},
                                                    {"stations", tables.stations.size()},
                                                    {"associations", tables.associations.size()},
                                                    {"vrfs", tables.vrfs.size()},
                                                    {"protocol", tables.protocol.size()},
                                                    {"switch", tables.switch_controls.size()},
                                                    {"routes", tables.routes.size()},
                                                    {"labels", tables.labels.size()},
                                                    {"attachments", tables.attachments.size()},
                                                    {"members", tables.lags.size()}};
  std::vector<softcard::Row> rows;
  for (const auto& [name, size] : sizes) {
    rows.push_back({&kUsage, calls::ToValue(name), {calls::ToValue(card.RowCount(name)), calls::ToValue(size)}});
  }
  return rows;
}

}  // namespace diagnosis
