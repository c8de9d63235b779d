#include "softcard/tables/IntfTable.h"

#include "softcard/Limits.h"
#include "softcard/tables/Sorted.h"

namespace softcard {

using calls::Kind;

const TableDescription IntfTable::kDescription = {"intfs",
                                                  "intf",
                                                  Origin::kMadeByRequests,
                                                  {"intf", Kind::kNumber},
                                                  {{"vrf", Kind::kNumber},
                                                   {"vlan", Kind::kNumber},
                                                   {"mac", Kind::kMac},
                                                   {"mtu", Kind::kNumber},
                                                   {"flags", Kind::kHex},
                                                   {"tunnel", Kind::kTunnelType}}};

int IntfTable::Check(unsigned vlan_id, const unsigned char* mac, unsigned mtu) {
  return mac && IsVlan(vlan_id) && mtu > 0 ? BCM_E_NONE : BCM_E_PARAM;
}

Row MakeRow(const IntfObject& intf) {
  using calls::ToValue;
  const IntfValues values = ValuesOf(intf);
  return {&IntfTable::kDescription,
          ToValue(values.id),
          {ToValue(values.vrf), ToValue(values.vlan_id), ToValue(values.mac), ToValue(values.mtu),
           ToValue(values.flags), ToValue(values.tunnel)}};
}

std::vector<Row> IntfTable::Rows() const {
  std::vector<Row> result;
  for (const auto& row : Sorted(rows())) result.push_back(MakeRow(row.second));
  return result;
}

}  // namespace softcard
