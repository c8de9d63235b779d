#include "softcard/tables/EgressTable.h"

#include <algorithm>

#include "calls/Text.h"

namespace softcard {
namespace {

Egress WithMac(Egress values, const unsigned char* mac) {
  std::copy_n(mac, values.mac.size(), values.mac.begin());
  return values;
}

}  // namespace

int EgressTable::Check(const Egress& values, const unsigned char* mac) const {
  if (!mac || values.control < EXP_LABEL_CONTROL_NONE || values.control > EXP_LABEL_CONTROL_VC) return BCM_E_PARAM;
  if (values.HasLabel() && values.label > kLastLabel) return BCM_E_PARAM;
  if (values.intf != kNoIntf && !intfs_.Find(values.intf)) return BCM_E_NOT_FOUND;
  if (!values.drop && !ports_.Exists(values.port)) return BCM_E_PORT;
  return BCM_E_NONE;
}

int EgressTable::Create(const Egress& values, const unsigned char* mac) {
  const int rv = Check(values, mac);
  return rv < 0 ? rv : Add(WithMac(values, mac));
}

int EgressTable::Update(int egress_id, const Egress& values, const unsigned char* mac) {
  Egress* const egress = Find(egress_id);
  if (!egress) return BCM_E_NOT_FOUND;
  const int rv = Check(values, mac);
  if (rv >= 0) *egress = WithMac(values, mac);
  return rv;
}

std::string EgressTable::RowText(int egress_id, const Egress& egress) const {
  return "egress " + Text(egress_id) + ": " +
         Fields(" ", "intf", egress.intf, "mac", egress.mac, "vlan", egress.vlan_id, "port", ports_.Name(egress.port),
                "label", Label{egress.label}, "to_cpu", egress.to_cpu, "drop", egress.drop, "control", egress.control);
}

std::vector<std::string> EgressTable::Rows() const {
  std::vector<std::string> lines;
  for (const auto& [egress_id, egress] : rows()) lines.push_back(RowText(egress_id, egress));
  return lines;
}

}  // namespace softcard
