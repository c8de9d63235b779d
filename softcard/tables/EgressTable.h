#ifndef SOFTCARD_TABLES_EGRESS_TABLE_H
#define SOFTCARD_TABLES_EGRESS_TABLE_H

#include <vector>

#include "hal/EgressManager.h"
#include "hal/IntfObject.h"
#include "softcard/Limits.h"
#include "softcard/tables/IdTable.h"
#include "softcard/tables/IntfTable.h"
#include "softcard/tables/Ports.h"

namespace softcard {

/// A next hop: where a packet goes, and the label that it gets below those of the interface's tunnel initiator.
struct Egress {
  int intf;  ///< kNoIntf, or an interface, which may have been deleted since
  MacAddress mac;
  unsigned short vlan_id;
  int port;
  unsigned label;
  bool to_cpu;
  bool drop;
  ExpLabelControl control;

  /// Whether `label` counts.
  bool HasLabel() const { return control != EXP_LABEL_CONTROL_NONE && label != kNoLabel; }
};

/// L3 egress objects. They are bound to interfaces by id only: deleting an interface leaves its egress objects.
class EgressTable : IdTable<Egress> {
 public:
  static const TableDescription kDescription;

  explicit EgressTable(unsigned size) : IdTable(100001, size) {}

  /// The new object's id; BCM_E_PARAM for a null MAC, a VLAN above 4094, a label above 20 bits that counts, an unknown
  /// control; BCM_E_NOT_FOUND for an unknown interface; BCM_E_PORT for an unknown port, unless it drops; BCM_E_FULL.
  int Create(const Egress& values, const unsigned char* mac, const IntfTable& intfs, const Ports& ports);
  /// The same refusals; BCM_E_NOT_FOUND for an unknown egress object.
  int Update(int egress_id, const Egress& values, const unsigned char* mac, const IntfTable& intfs, const Ports& ports);
  using IdTable::Delete;

  /// Null for an unknown egress object.
  const Egress* Find(int egress_id) const { return IdTable::Find(egress_id); }
  using IdTable::rows;
  using IdTable::size;
  std::vector<Row> Rows(const Ports& ports) const;
};

Row MakeRow(int egress_id, const Egress& egress, const Ports& ports);

}  // namespace softcard

#endif
