#ifndef SOFTCARD_TABLES_INTF_TABLE_H
#define SOFTCARD_TABLES_INTF_TABLE_H

#include <string>
#include <vector>

#include "hal/IntfObject.h"
#include "softcard/tables/IdTable.h"

namespace softcard {

/// L3 interfaces. Only `IntfManager` can write what is in an interface object.
class IntfTable : public IdTable<IntfObject> {
 public:
  explicit IntfTable(unsigned size) : IdTable(1, size) {}

  /// BCM_E_PARAM for values that no interface can have.
  static int Check(unsigned vlan_id, const unsigned char* mac, unsigned mtu);

  std::vector<std::string> Rows() const;
};

/// "intf 1: vrf=1 vlan=100 mac=00:00:5e:00:01:01 mtu=1500 flags=0x0", `deep` with " tunnel=none" behind.
std::string IntfText(const IntfObject& intf, bool deep);

}  // namespace softcard

#endif
