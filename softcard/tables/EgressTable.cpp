#include "softcard/tables/EgressTable.h"

#include <algorithm>

#include "softcard/tables/Sorted.h"

namespace softcard {
namespace {

int Check(const Egress& values, const unsigned char* mac, const IntfTable& intfs, const Ports& ports) {
  if (!mac || values.vlan_id > kLastVlan) return BCM_E_PARAM;
  if (values.control < EXP_LABEL_CONTROL_NONE || values.control > EXP_LABEL_CONTROL_VC) return BCM_E_PARAM;
  if (values.HasLabel() && values.label > kLastLabel) return BCM_E_PARAM;
  if (values.intf != kNoIntf && !intfs.Find(values.intf)) return BCM_E_NOT_FOUND;
  if (!values.drop && !ports.Exists(values.port)) return BCM_E_PORT;
  return BCM_E_NONE;
}

Egress WithMac(Egress values, const unsigned char* mac) {
  std::copy_n(mac, values.mac.size(), values.mac.begin());
  return values;
}

}  // namespace

using calls::Kind;

const TableDescription EgressTable::kDescription = {"egresses",
                                                    "egress",
                                                    Origin::kMadeByRequests,
                                                    {"egress", Kind::kNumber},
                                                    {{"intf", Kind::kNumber},
                                                     {"mac", Kind::kMac},
                                                     {"vlan", Kind::kNumber},
                                                     {"port", Kind::kText},
                                                     {"label", Kind::kLabel},
                                                     {"to_cpu", Kind::kBool},
                                                     {"drop", Kind::kBool},
                                                     {"control", Kind::kNumber}}};

int EgressTable::Create(const Egress& values, const unsigned char* mac, const IntfTable& intfs, const Ports& ports) {
  const int rv = Check(values, mac, intfs, ports);
  return rv < 0 ? rv : Add(WithMac(values, mac));
}

int EgressTable::Update(int egress_id, const Egress& values, const unsigned char* mac, const IntfTable& intfs,
                        const Ports& ports) {
  Egress* const egress = IdTable::Find(egress_id);
  if (!egress) return BCM_E_NOT_FOUND;
  const int rv = Check(values, mac, intfs, ports);
  if (rv >= 0) *egress = WithMac(values, mac);
  return rv;
}

Row MakeRow(int egress_id, const Egress& egress, const Ports& ports) {
  using calls::ToValue;
  return {&EgressTable::kDescription,
          ToValue(egress_id),
          {ToValue(egress.intf), ToValue(egress.mac), ToValue(egress.vlan_id), ToValue(ports.Name(egress.port)),
           ToValue(egress.label), ToValue(egress.to_cpu), ToValue(egress.drop), ToValue(egress.control)}};
}

std::vector<Row> EgressTable::Rows(const Ports& ports) const {
  std::vector<Row> result;
  for (const auto& [egress_id, egress] : Sorted(rows())) result.push_back(MakeRow(egress_id, egress, ports));
  return result;
}

}  // namespace softcard
