#include "diagnosis/Holders.h"

namespace diagnosis {
namespace {

/// What a record that nobody saw being made looks like: a VLAN's has no egress object, a tunnel an interface of its
/// own.
Maker Guess(const Holder& holder) {
  if (holder.egress == 0) return Maker::kVlan;
  const bool tunnel = holder.intf_values && holder.intf_values->tunnel == TunnelObject::kTunnelTypeMpls;
  const bool labelled = holder.egress_object != nullptr && holder.egress_object->HasLabel();
  return tunnel || labelled ? Maker::kMpls : Maker::kHost;
}

}  // namespace

bool Holder::OwnsIntf() const {
  if (!intf_values) return false;
  return maker == Maker::kVlan || (maker == Maker::kMpls && intf_values->tunnel == TunnelObject::kTunnelTypeMpls);
}

void ForEachHolder(const softcard::Card& card, const Ledger& ledger, const std::function<void(const Holder&)>& visit) {
  const softcard::Tables& tables = card.tables();
  for (const auto& [id, record] : card.common().destination_id_correlators) {
    Holder holder{id, record.intf_id, record.egress_id, ledger.MakerOf(id), {}, tables.egresses.Find(record.egress_id)};
    if (const IntfObject* intf = tables.intfs.Find(record.intf_id)) holder.intf_values = softcard::ValuesOf(*intf);
    if (holder.maker == Maker::kUnknown) holder.maker = Guess(holder);
    visit(holder);
  }
}

}  // namespace diagnosis
