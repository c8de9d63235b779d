#ifndef SOFTCARD_TABLES_STATION_TABLE_H
#define SOFTCARD_TABLES_STATION_TABLE_H

#include <string>
#include <vector>

#include "hal/IntfObject.h"
#include "softcard/tables/KeyTable.h"

namespace softcard {

struct Station {
  unsigned vlan_mask;
  MacAddress mac;
  unsigned flags;
};

/// My-station entries by VLAN.
class StationTable : public KeyTable<unsigned, Station> {
 public:
  explicit StationTable(unsigned size) : KeyTable(size) {}

  /// BCM_E_PARAM for a null MAC, BCM_E_EXISTS for a VLAN that has an entry, BCM_E_FULL.
  int Insert(unsigned vlan_id, unsigned vlan_mask, const unsigned char* mac, unsigned flags);
  /// The same for a VLAN with or without an entry.
  int Update(unsigned vlan_id, unsigned vlan_mask, const unsigned char* mac, unsigned flags);

  std::vector<std::string> Rows() const;
};

}  // namespace softcard

#endif
