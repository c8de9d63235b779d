#include "hal/IntfManager.h"

#include <algorithm>
#include <cstring>

#include "softcard/Funnel.h"

using namespace softcard;

int IntfManager::CreateIntf(unsigned int unit, int vrf, unsigned int vlan_id, unsigned char* mac, unsigned int mtu,
                            unsigned int l3_flags) {
  return Call<Named("IntfManager::CreateIntf")>(Args(unit, vrf, vlan_id, mac, mtu, l3_flags), [&] {
    return OnUnit(unit, [&] {
      if (IntfTable::Check(vlan_id, mac, mtu) < 0) return static_cast<int>(BCM_E_PARAM);
      const int intf = TheTables().intfs.Create();
      const Unseen unseen(Card::Get());
      return intf < 0 ? intf : UpdateIntf(intf, unit, vrf, vlan_id, mac, mtu, l3_flags);
    });
  });
}

int IntfManager::UpdateIntf(int intf, unsigned int unit, int vrf, unsigned int vlan_id, unsigned char* mac,
                            unsigned int mtu, unsigned int l3_flags) {
  return Call<Named("IntfManager::UpdateIntf")>(Args(intf, unit, vrf, vlan_id, mac, mtu, l3_flags), [&] {
    return OnUnit(unit, [&] {
      Intf* const object = TheTables().intfs.Find(intf);
      if (!object) return static_cast<int>(BCM_E_NOT_FOUND);
      if (IntfTable::Check(vlan_id, mac, mtu) < 0) return static_cast<int>(BCM_E_PARAM);
      object->id_ = intf;
      object->vrf_ = static_cast<unsigned>(vrf);
      object->vlan_id_ = vlan_id;
      std::copy_n(mac, object->macsa_.size(), object->macsa_.begin());
      object->mtu_ = mtu;
      object->l3_flags_ = l3_flags;
      static_cast<Framing&>(*object) = {object->macsa_, vlan_id, mtu};
      return intf;
    });
  });
}

int IntfManager::DeleteIntf(int unit, int intf) {
  return Call<Named("IntfManager::DeleteIntf")>(Args(unit, intf), [&] {
    return OnUnit(unit, [&] {
      TheTables().initiators.Clear(intf);  // a tunnel initiator goes with its interface
      return TheTables().intfs.Delete(intf);
    });
  });
}

bool IntfManager::GetIntfObject(int intf, IntfObject** object) {
  const bool found = Call<Named("IntfManager::GetIntfObject")>(Args(intf), [&] {
    *object = TheTables().intfs.Find(intf);
    return *object != nullptr;
  });
  // Nobody may read the pointer after a false, a planned one included: it leads nowhere.
  if (!found) std::memset(object, '#', sizeof(void*));
  return found;
}
