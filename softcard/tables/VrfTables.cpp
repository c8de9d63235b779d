#include "softcard/tables/VrfTables.h"

#include "softcard/Limits.h"
#include "softcard/tables/Sorted.h"

namespace softcard {

using calls::Kind;
using calls::ToValue;

const TableDescription VrfTable::kDescription = {
    "vrfs", "vrf", Origin::kMadeByRequests, {"vrf", Kind::kNumber}, {{"flags", Kind::kHex}}};

std::vector<Row> VrfTable::Rows() const {
  std::vector<Row> result;
  for (const auto& [vrf, flags] : Sorted(rows())) result.push_back({&kDescription, ToValue(vrf), {ToValue(flags)}});
  return result;
}

const TableDescription AssociationTable::kDescription = {
    "associations", "association", Origin::kMadeByRequests, {"vlan", Kind::kNumber}, {{"vrf", Kind::kNumber}}};

int AssociationTable::Associate(unsigned vlan_id, unsigned vrf, const VrfTable& vrfs) {
  if (!IsVlan(vlan_id)) return BCM_E_PARAM;
  return vrfs.Exists(vrf) ? Insert(vlan_id, vrf) : static_cast<int>(BCM_E_NOT_FOUND);
}

int AssociationTable::Dissociate(unsigned vlan_id, unsigned vrf) {
  if (!IsVlan(vlan_id)) return BCM_E_PARAM;
  const unsigned* const associated = Find(vlan_id);
  return associated && *associated == vrf ? Delete(vlan_id) : static_cast<int>(BCM_E_NOT_FOUND);
}

std::vector<Row> AssociationTable::Rows() const {
  std::vector<Row> result;
  for (const auto& [vlan_id, vrf] : Sorted(rows())) result.push_back(MakeRow(vlan_id, vrf));
  return result;
}

Row MakeRow(unsigned vlan_id, unsigned vrf) {
  return {&AssociationTable::kDescription, ToValue(vlan_id), {ToValue(vrf)}};
}

}  // namespace softcard
