#ifndef SOFTCARD_TABLES_STATION_TABLE_H
#define SOFTCARD_TABLES_STATION_TABLE_H

#include <vector>

#include "hal/IntfObject.h"
#include "softcard/tables/KeyTable.h"
#include "softcard/tables/Row.h"

namespace softcard {

struct Station {
  unsigned vlan_mask;
  MacAddress mac;
  unsigned flags;
};

/// My-station entries by VLAN.
class StationTable : KeyTable<unsigned, Station> {
 public:
  static const TableDescription kDescription;

  explicit StationTable(unsigned size) : KeyTable(size) {}

  /// BCM_E_PARAM for a null MAC or no VLAN, BCM_E_EXISTS for a VLAN that has an entry, BCM_E_FULL.
  int Insert(unsigned vlan_id, unsigned vlan_mask, const unsigned char* mac, unsigned flags);
  /// The same for a VLAN with or without an entry.
  int Update(unsigned vlan_id, unsigned vlan_mask, const unsigned char* mac, unsigned flags);

  /// BCM_E_PARAM for no VLAN, BCM_E_NOT_FOUND for one without an entry.
  int Remove(unsigned vlan_id);

  using KeyTable::Find;
  using KeyTable::rows;
  using KeyTable::size;
  std::vector<Row> Rows() const;
};

Row MakeRow(unsigned vlan_id, const Station& station);

}  // namespace softcard

#endif
