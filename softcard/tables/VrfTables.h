#ifndef SOFTCARD_TABLES_VRF_TABLES_H
#define SOFTCARD_TABLES_VRF_TABLES_H

#include <string>
#include <vector>

#include "softcard/tables/KeyTable.h"

namespace softcard {

/// The VRFs that have been created. VRF 0, the default one, is always there: it takes no row, it cannot be created
/// again (BCM_E_EXISTS) and not be deleted (BCM_E_PARAM).
class VrfTable : public KeyTable<unsigned, unsigned> {
 public:
  explicit VrfTable(unsigned size) : KeyTable(size) {}

  int Create(unsigned vrf, unsigned flags) { return vrf == 0 ? BCM_E_EXISTS : Insert(vrf, flags); }
  /// VLANs that are associated with it stay so: associations are not counted.
  int Destroy(unsigned vrf) { return vrf == 0 ? BCM_E_PARAM : Delete(vrf); }
  bool Exists(unsigned vrf) const { return vrf == 0 || Find(vrf); }

  std::vector<std::string> Rows() const;
};

/// The VRF that each VLAN is routed in.
class AssociationTable : public KeyTable<int, unsigned> {
 public:
  AssociationTable(const VrfTable& vrfs, unsigned size) : KeyTable(size), vrfs_(vrfs) {}

  /// BCM_E_EXISTS for a VLAN that is associated, BCM_E_NOT_FOUND for a VRF that has not been created, BCM_E_FULL.
  int Associate(int vlan_id, unsigned vrf);
  /// BCM_E_NOT_FOUND for a VLAN that is not associated with this VRF.
  int Dissociate(int vlan_id, unsigned vrf);

  std::vector<std::string> Rows() const;

 private:
  const VrfTable& vrfs_;
};

}  // namespace softcard

#endif
