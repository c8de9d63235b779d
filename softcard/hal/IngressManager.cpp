#include "hal/IngressManager.h"

#include "softcard/Funnel.h"

using namespace softcard;

int IngressManager::CreateIngress(int unit, unsigned int vrf, unsigned int flags) {
  return Call("IngressManager::CreateIngress", Args("unit", unit, "vrf", vrf, "flags", Hex{flags}),
              [&] { return OnUnit(unit, [&] { return TheTables().vrfs.Create(vrf, flags); }); });
}

int IngressManager::DeleteIngress(int unit, unsigned int vrf) {
  return Call("IngressManager::DeleteIngress", Args("unit", unit, "vrf", vrf),
              [&] { return OnUnit(unit, [&] { return TheTables().vrfs.Destroy(vrf); }); });
}

int IngressManager::AssociateVlanToVrf(int vlan_id, unsigned int vrf) {
  return Call("IngressManager::AssociateVlanToVrf", Args("vlan", vlan_id, "vrf", vrf),
              [&] { return TheTables().associations.Associate(vlan_id, vrf); });
}

int IngressManager::DissociateVlanfromVrf(int vlan_id, unsigned int vrf) {
  return Call("IngressManager::DissociateVlanfromVrf", Args("vlan", vlan_id, "vrf", vrf),
              [&] { return TheTables().associations.Dissociate(vlan_id, vrf); });
}
