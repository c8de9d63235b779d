#include "hal/MyStationManager.h"

#include "softcard/Funnel.h"

using namespace softcard;

int MyStationManager::InsertMyStationVlanEntry(unsigned int vlan_id, unsigned int vlan_mask, const unsigned char* mac,
                                               unsigned int flags) {
  return Call<Named("MyStationManager::InsertMyStationVlanEntry")>(Args(vlan_id, vlan_mask, mac, flags), [&] {
    return TheTables().stations.Insert(vlan_id, vlan_mask, mac, flags);
  });
}

int MyStationManager::UpdateMyStationVlanEntry(unsigned int vlan_id, unsigned int vlan_mask, const unsigned char* mac,
                                               unsigned int flags) {
  return Call<Named("MyStationManager::UpdateMyStationVlanEntry")>(Args(vlan_id, vlan_mask, mac, flags), [&] {
    return TheTables().stations.Update(vlan_id, vlan_mask, mac, flags);
  });
}

int MyStationManager::RemoveMyStationVlanEntry(unsigned int vlan_id) {
  return Call<Named("MyStationManager::RemoveMyStationVlanEntry")>(
      Args(vlan_id), [&] { return TheTables().stations.Remove(vlan_id); });
}
