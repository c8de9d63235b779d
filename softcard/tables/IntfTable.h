#ifndef SOFTCARD_TABLES_INTF_TABLE_H
#define SOFTCARD_TABLES_INTF_TABLE_H

#include <vector>

#include "hal/IntfObject.h"
#include "softcard/tables/IdTable.h"
#include "softcard/tables/Row.h"

namespace softcard {

/// What every frame that leaves through an interface takes from it.
struct Framing {
  MacAddress mac{};
  unsigned vlan_id = 0;
  unsigned mtu = 0;
};
/// An interface object, and before it, beside the row's key, what frames take from it: a packet has no time to ask the
/// object's functions, which consult the fault plan and write the call log.
struct Intf : Framing, IntfObject {};

/// L3 interfaces. Only `IntfManager` can write what is in an interface object, and does so in both places.
class IntfTable : IdTable<Intf> {
 public:
  static const TableDescription kDescription;

  explicit IntfTable(unsigned size) : IdTable(1, size) {}

  /// BCM_E_PARAM for values that no interface can have.
  static int Check(unsigned vlan_id, const unsigned char* mac, unsigned mtu);

  /// The id of an interface without values, or BCM_E_FULL.
  int Create() { return Add({}); }
  using IdTable::Delete;
  using IdTable::Find;
  using IdTable::rows;
  using IdTable::size;
  std::vector<Row> Rows() const;
};

Row MakeRow(const IntfObject& intf);

/// What an interface object says of itself, asked for without being seen.
struct IntfValues {
  int id;
  unsigned vrf;
  unsigned vlan_id;
  MacAddress mac;
  unsigned mtu;
  unsigned flags;
  TunnelObject::EnumTunnelType tunnel;
};
/// Defined beside the objects, which alone know the card that must not see it.
IntfValues ValuesOf(const IntfObject& intf);

}  // namespace softcard

#endif
