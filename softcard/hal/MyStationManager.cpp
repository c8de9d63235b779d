#include "hal/MyStationManager.h"

#include "softcard/Funnel.h"

using namespace softcard;

int MyStationManager::InsertMyStationVlanEntry(unsigned int vlan_id, unsigned int vlan_mask, const unsigned char* mac,
                                               unsigned int flags) {
  return Call("MyStationManager::InsertMyStationVlanEntry",
              Args("vlan", vlan_id, "mask", Hex{vlan_mask}, "mac", mac, "flags", Hex{flags}),
              [&] { return TheTables().stations.Insert(vlan_id, vlan_mask, mac, flags); });
}

int MyStationManager::UpdateMyStationVlanEntry(unsigned int vlan_id, unsigned int vlan_mask, const unsigned char* mac,
                                               unsigned int flags) {
  return Call("MyStationManager::UpdateMyStationVlanEntry",
              Args("vlan", vlan_id, "mask", Hex{vlan_mask}, "mac", mac, "flags", Hex{flags}),
              [&] { return TheTables().stations.Update(vlan_id, vlan_mask, mac, flags); });
}

int MyStationManager::RemoveMyStationVlanEntry(unsigned int vlan_id) {
  return Call("MyStationManager::RemoveMyStationVlanEntry", Args("vlan", vlan_id),
              [&] { return TheTables().stations.Delete(vlan_id); });
}
