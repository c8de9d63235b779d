#include "hal/IngressManager.h"

#include "softcard/Funnel.h"

using namespace softcard;

int IngressManager::CreateIngress(int unit, unsigned int vrf, unsigned int flags) {
  return Call<Named("IngressManager::CreateIngress")>(
      Args(unit, vrf, flags), [&] { return OnUnit(unit, [&] { return TheTables().vrfs.Create(vrf, flags); }); });
}

int IngressManager::DeleteIngress(int unit, unsigned int vrf) {
  return Call<Named("IngressManager::DeleteIngress")>(
      Args(unit, vrf), [&] { return OnUnit(unit, [&] { return TheTables().vrfs.Destroy(vrf); }); });
}

int IngressManager::AssociateVlanToVrf(int vlan_id, unsigned int vrf) {
  return Call<Named("IngressManager::AssociateVlanToVrf")>(Args(vlan_id, vrf), [&] {
    return TheTables().associations.Associate(static_cast<unsigned>(vlan_id), vrf, TheTables().vrfs);
  });
}

int IngressManager::DissociateVlanfromVrf(int vlan_id, unsigned int vrf) {
  return Call<Named("IngressManager::DissociateVlanfromVrf")>(
      Args(vlan_id, vrf), [&] { return TheTables().associations.Dissociate(static_cast<unsigned>(vlan_id), vrf); });
}
