#ifndef SOFTCARD_TABLES_VRF_TABLES_H
#define SOFTCARD_TABLES_VRF_TABLES_H

#include <vector>

#include "softcard/tables/KeyTable.h"
#include "softcard/tables/Row.h"

namespace softcard {

/// The VRFs that have been created. VRF 0, the default one, is always there: it takes no row, it cannot be created
/// again (BCM_E_EXISTS) and not be deleted (BCM_E_PARAM).
class VrfTable : KeyTable<unsigned, unsigned> {
 public:
  static const TableDescription kDescription;

  explicit VrfTable(unsigned size) : KeyTable(size) {}

  int Create(unsigned vrf, unsigned flags) { return vrf == 0 ? BCM_E_EXISTS : Insert(vrf, flags); }
  /// VLANs that are associated with it stay so: associations are not counted.
  int Destroy(unsigned vrf) { return vrf == 0 ? BCM_E_PARAM : Delete(vrf); }
  bool Exists(unsigned vrf) const { return vrf == 0 || Find(vrf); }

  using KeyTable::rows;
  using KeyTable::size;
  std::vector<Row> Rows() const;
};

/// The VRF that each VLAN is routed in.
class AssociationTable : KeyTable<unsigned, unsigned> {
 public:
  static const TableDescription kDescription;

  explicit AssociationTable(unsigned size) : KeyTable(size) {}

  /// BCM_E_PARAM for no VLAN, BCM_E_EXISTS for one that is associated, BCM_E_NOT_FOUND for a VRF that has not been
  /// created, BCM_E_FULL.
  int Associate(unsigned vlan_id, unsigned vrf, const VrfTable& vrfs);
  /// BCM_E_PARAM for no VLAN, BCM_E_NOT_FOUND for one that is not associated with this VRF.
  int Dissociate(unsigned vlan_id, unsigned vrf);

  using KeyTable::Find;
  using KeyTable::rows;
  using KeyTable::size;
  std::vector<Row> Rows() const;
};

/// Of an association.
Row MakeRow(unsigned vlan_id, unsigned vrf);

}  // namespace softcard

#endif
