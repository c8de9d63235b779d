#ifndef SOFTCARD_TABLES_PORT_TABLES_H
#define SOFTCARD_TABLES_PORT_TABLES_H

#include <vector>

#include "softcard/tables/KeyTable.h"
#include "softcard/tables/Ports.h"
#include "softcard/tables/Row.h"

namespace softcard {

/// The Ethernet ports whose frames go whole to a destination, a virtual circuit.
class AttachTable : KeyTable<int, unsigned> {
 public:
  static const TableDescription kDescription;

  explicit AttachTable(unsigned size) : KeyTable(size) {}

  /// The port's destination in place of the one that it may have. BCM_E_PORT for what is no Ethernet port, BCM_E_FULL.
  int Set(int port, unsigned destination, const Ports& ports);
  using KeyTable::Delete;

  using KeyTable::Find;
  using KeyTable::rows;
  using KeyTable::size;
  std::vector<Row> Rows(const Ports& ports) const;
};

/// "attachment eth1: destination=20".
Row AttachmentRow(int port, unsigned destination, const Ports& ports);

/// The Ethernet ports that LAGs are made of.
class LagTable : KeyTable<int, std::vector<int>> {
 public:
  static const TableDescription kDescription;

  explicit LagTable(unsigned size) : KeyTable(size) {}

  /// The LAG's members in place of those that it may have. BCM_E_PORT for what is no LAG and no Ethernet port;
  /// BCM_E_PARAM for no members and for one that is named twice, BCM_E_EXISTS for a member of another LAG; BCM_E_FULL.
  int Set(int lag, const std::vector<int>& members, const Ports& ports);
  using KeyTable::Delete;

  using KeyTable::Find;
  using KeyTable::rows;
  using KeyTable::size;
  std::vector<Row> Rows(const Ports& ports) const;
};

/// "members lag1: ports=eth1,eth2".
Row MembersRow(int lag, const std::vector<int>& members, const Ports& ports);

}  // namespace softcard

#endif
