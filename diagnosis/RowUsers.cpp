#include "diagnosis/RowUsers.h"

#include "diagnosis/Holders.h"

namespace diagnosis {
namespace {

/// The name of the row that says who uses this one.
std::string Decisive(const softcard::Row& row) {
  const int destination = row.table->Find("destination");
  if (destination >= 0) {
    const auto column = static_cast<std::size_t>(destination);
    return "destination " + calls::Text(row.table->columns[column].kind, row.values[column]);
  }
  // "destination 30", "pop-vrf 1"
  if (row.table == &softcard::LabelTable::kDescription) {
    return std::get<std::string>(row.values[0]) + ' ' + std::get<std::string>(row.values[1]);
  }
  return softcard::NameOf(row);
}

}  // namespace

RowUsers::RowUsers(const softcard::Card& card, const Ledger& ledger) {
  const softcard::Ports& ports = card.tables().ports;
  ForEachHolder(card, ledger, [&](const Holder& holder) {
    const auto id = static_cast<unsigned>(holder.destination);
    const auto uses = [&](const std::string& row) { users_[row].insert(id); };
    const auto uses_number = [&](const char* row, std::int64_t key) { uses(row + std::to_string(key)); };
    uses(holder.Name());
    uses("counter " + holder.Name());
    uses_number("intf ", holder.intf);
    uses_number("initiator ", holder.intf);
    if (holder.maker == Maker::kVlan && holder.intf_values) {
      for (const char* row : {"station ", "association ", "protocol "}) uses_number(row, holder.intf_values->vlan_id);
      uses_number("vrf ", holder.intf_values->vrf);
    }
    if (holder.egress_object == nullptr) return;
    const softcard::Egress& egress = *holder.egress_object;
    uses_number("egress ", holder.egress);
    uses_number("intf ", egress.intf);
    uses_number("initiator ", egress.intf);
    uses_number(ports.IsLag(egress.port) ? "lag " : "port ", egress.port);
    uses("members " + ports.Name(egress.port));
  });
}

const std::set<unsigned>& RowUsers::Of(const softcard::Row& row) const {
  static const std::set<unsigned> kNobody;
  const auto users = users_.find(Decisive(row));
  return users == users_.end() ? kNobody : users->second;
}

}  // namespace diagnosis
