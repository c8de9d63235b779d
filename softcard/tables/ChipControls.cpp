#include "softcard/tables/ChipControls.h"

#include "softcard/Limits.h"
#include "softcard/tables/Sorted.h"

namespace softcard {

using calls::Kind;

const TableDescription ProtocolControl::kDescription = {
    "protocol", "protocol", Origin::kMadeByRequests, {"vlan", Kind::kNumber}, {{"control", Kind::kText}}};

int ProtocolControl::Enable(unsigned vlan_id) { return IsVlan(vlan_id) ? Write(vlan_id, true) : BCM_E_PARAM; }

int ProtocolControl::Disable(unsigned vlan_id) {
  if (!IsVlan(vlan_id)) return BCM_E_PARAM;
  Delete(vlan_id);
  return BCM_E_NONE;
}

std::vector<Row> ProtocolControl::Rows() const {
  std::vector<Row> result;
  for (const auto& row : Sorted(rows())) {
    result.push_back({&kDescription, calls::ToValue(row.first), {calls::ToValue("on")}});
  }
  return result;
}

const TableDescription SwitchControls::kDescription = {
    "switch", "switch", Origin::kSetAtStart, {"control", Kind::kSwitchControl}, {{"mode", Kind::kNumber}}};

int SwitchControls::Set(bcm_switch_control_t control, int mode) {
  if (control != bcmSwitchL3EgressMode && control != bcmSwitchL3IngressMode) return BCM_E_UNAVAIL;
  return mode == 0 || mode == 1 ? Write(control, mode) : static_cast<int>(BCM_E_PARAM);
}

std::vector<Row> SwitchControls::Rows() const {
  std::vector<Row> result;
  for (const auto& [control, mode] : Sorted(rows())) {
    result.push_back({&kDescription, calls::ToValue(static_cast<int>(control)), {calls::ToValue(mode)}});
  }
  return result;
}

}  // namespace softcard
