#include "diagnosis/StateDifference.h"

#include <limits>
#include <map>
#include <string>
#include <tuple>

namespace diagnosis {
namespace {

std::int64_t Number(const calls::Value& value) { return std::get<std::int64_t>(value); }

std::int64_t Column(const softcard::Row& row, const char* column) {
  return Number(row.values[static_cast<std::size_t>(row.table->Find(column))]);
}

/// Which destination each row belongs to, by the records among the rows.
class Owners {
 public:
  explicit Owners(const Rows& rows) {
    const auto each = [&rows](std::string_view table, const auto& visit) {
      for (const softcard::Row& row : rows) {
        if (row.table->name == table) visit(row);
      }
    };
    each("destinations", [&](const softcard::Row& row) {
      const std::int64_t intf = Column(row, "intf"), egress = Column(row, "egress");
      if (egress > 0) owners_["egresses"].emplace(egress, Number(row.key));
      // A VLAN, which has no egress object, holds its interface; others leave through it.
      if (egress == 0) owners_["intfs"][intf] = Number(row.key);
      owners_["intfs"].emplace(intf, Number(row.key));
    });
    owners_["initiators"] = owners_["intfs"];
    each("intfs", [&](const softcard::Row& row) {
      const auto owner = Of(row);
      if (!owner || Column(row, "tunnel") != TunnelObject::kTunnelTypeNone) return;
      for (const char* table : {"stations", "associations", "protocol"}) {
        owners_[table].emplace(Column(row, "vlan"), *owner);
      }
    });
  }

  std::optional<std::int64_t> Of(const softcard::Row& row) const {
    const std::string_view table = row.table->name;
    if (table == "destinations") return Number(row.key);
    const auto owners = owners_.find(table);
    if (owners == owners_.end()) return std::nullopt;
    const auto owner = owners->second.find(Number(row.key));
    return owner == owners->second.end() ? std::nullopt : std::optional(owner->second);
  }

 private:
  std::map<std::string_view, std::map<std::int64_t, std::int64_t>> owners_;  ///< by table and key
};

constexpr std::int64_t kNobody = std::numeric_limits<std::int64_t>::max();

}  // namespace

std::vector<DestinationChanges> ByDestination(const Rows& before, const Rows& after) {
  using RowName = std::pair<std::string, std::string>;
  const Owners old_owners(before), new_owners(after);
  const Changes changes = Compare(before, after);
  std::map<RowName, std::pair<std::int64_t, RowChange>> rows;
  const auto name = [](const softcard::Row& row) { return RowName(row.table->name, softcard::NameOf(row)); };
  for (const softcard::Row& row : changes.took) {
    rows[name(row)] = {old_owners.Of(row).value_or(kNobody), {row, std::nullopt}};
  }
  for (const softcard::Row& row : changes.put) {
    auto& [destination, change] = rows[name(row)];
    destination = new_owners.Of(row).value_or(kNobody);
    change.second = row;
  }
  std::map<std::int64_t, DestinationChanges> grouped;
  const auto add = [&](const softcard::Row& row) {
    const auto found = rows.find(name(row));
    if (found == rows.end()) return;
    auto& [destination, change] = found->second;
    DestinationChanges& group = grouped[destination];
    if (destination != kNobody) group.destination = destination;
    group.rows.push_back(std::move(change));
    rows.erase(found);
  };
  // In the order of the tables.
  for (const softcard::Row& row : changes.took) add(row);
  for (const softcard::Row& row : changes.put) add(row);
  std::vector<DestinationChanges> result;
  result.reserve(grouped.size());
  for (auto& [destination, group] : grouped) result.push_back(std::move(group));
  return result;
}

}  // namespace diagnosis
