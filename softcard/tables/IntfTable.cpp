#include "softcard/tables/IntfTable.h"

#include "softcard/Funnel.h"
#include "softcard/Limits.h"

namespace softcard {

int IntfTable::Check(unsigned vlan_id, const unsigned char* mac, unsigned mtu) {
  const bool good = mac && vlan_id >= kFirstVlan && vlan_id <= kLastVlan && mtu > 0;
  return good ? BCM_E_NONE : BCM_E_PARAM;
}

std::vector<std::string> IntfTable::Rows() const {
  std::vector<std::string> lines;
  for (const auto& row : rows()) lines.push_back(IntfText(row.second, true));
  return lines;
}

std::string IntfText(const IntfObject& intf, bool deep) {
  const Unseen unseen;
  std::string text = "intf " + Text(intf.id()) + ": " +
                     Fields(" ", "vrf", intf.vrf(), "vlan", intf.vlan_id(), "mac", intf.macsa(), "mtu", intf.mtu(),
                            "flags", Hex{intf.l3_flags()});
  // The object hands its tunnel out for changing only.
  if (deep) text += ' ' + Fields(" ", "tunnel", const_cast<IntfObject&>(intf).tunnel().type());
  return text;
}

}  // namespace softcard
