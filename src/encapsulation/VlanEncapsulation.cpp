#include <algorithm>

#include "HalL3MplsEncapsulationBcm.h"
#include "LogText.h"
#include "hal/HalCallbacksItf.h"
#include "hal/IngressManager.h"
#include "hal/IntfManager.h"
#include "hal/MyStationManager.h"
#include "hal/fm.h"

namespace {

unsigned int MyStationFlags(const std::vector<en_HalVlanCapabilities>& capabilities) {
  constexpr unsigned int kStationFlag = 0x20;
  const auto flags = std::count(capabilities.begin(), capabilities.end(), HAL_VLAN_CAPABILITY_STATION_FLAG);
  return flags != 0 ? kStationFlag : 0;
}

// The interface's values are read one by one, before the call that takes them: left to the call, their order would be
// the compiler's choice.

int Associate(IngressManager* ingress_manager, const IntfObject& intf) {
  const unsigned int vlan_id = intf.vlan_id();
  const unsigned int vrf = intf.vrf();
  return ingress_manager->AssociateVlanToVrf(static_cast<int>(vlan_id), vrf);
}

int Dissociate(IngressManager* ingress_manager, const IntfObject& intf) {
  const unsigned int vlan_id = intf.vlan_id();
  const unsigned int vrf = intf.vrf();
  return ingress_manager->DissociateVlanfromVrf(static_cast<int>(vlan_id), vrf);
}

/// Puts a destroyed entry back with the interface's own flags, not with those of the install: the card wants it so.
void RestoreMyStation(MyStationManager* my_station_manager, const IntfObject& intf, unsigned int vlan_mask) {
  const unsigned int vlan_id = intf.vlan_id();
  const MacAddress mac = intf.macsa();
  const unsigned int flags = intf.l3_flags();
  my_station_manager->InsertMyStationVlanEntry(vlan_id, vlan_mask, mac.data(), flags);
}

}  // namespace

int HalL3MplsEncapsulationBcm::InstallVlanOutgoingEncapsulation(
    unsigned int destination_id, limid_t limid, unsigned int vrf, unsigned int mtu, unsigned char* mac,
    std::vector<en_HalVlanCapabilities> capabilities) const {
  HalCallbacksItf::getInstance()->log(kProgress, "Installing outgoing encapsulation for VLAN %s",
                                      DestinationText(destination_id).c_str());

  const unsigned int vlan_id = limid_to_l3_vlan_vlanid(limid);
  const fm_vlan_proto_ctrl_t enable = fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_enable(fm_local_slot());
  if (enable(unit(), static_cast<unsigned short>(vlan_id)) != 0) {
    // The encapsulation routes without it: the install goes on, and no later failure switches it off.
    HalCallbacksItf::getInstance()->log(kFailure, "Error enabling VLAN Protocol Packet Control on VLAN %d", vlan_id);
  }

  const unsigned int flags = MyStationFlags(capabilities);
  if (resource_manager_->my_station_mng()->InsertMyStationVlanEntry(vlan_id, vlan_mask_, mac, flags) < 0) return -1;

  if (resource_manager_->ingress_mng()->AssociateVlanToVrf(vlan_id, vrf) != 0) {
    resource_manager_->my_station_mng()->RemoveMyStationVlanEntry(vlan_id);
    return -1;
  }

  const int intf_id = resource_manager_->intf_mng()->CreateIntf(unit(), vrf, vlan_id, mac, mtu, 0);
  if (intf_id < 0) {
    HalCallbacksItf::getInstance()->log(kFailure, "Error on installing vlan outgoing encapsulation of %s",
                                        VlanText(vlan_id).c_str());
    resource_manager_->my_station_mng()->RemoveMyStationVlanEntry(vlan_id);
    resource_manager_->ingress_mng()->DissociateVlanfromVrf(vlan_id, vrf);
    return -1;
  }

  RecordDestination(destination_id, intf_id, 0);
  return 0;
}

int HalL3MplsEncapsulationBcm::ReplaceVlanOutgoingEncapsulation(
    unsigned int destination_id, limid_t limid, unsigned int vrf, unsigned int mtu, unsigned char* mac,
    std::vector<en_HalVlanCapabilities> capabilities) const {
  const IdText destination = DestinationText(destination_id);
  HalCallbacksItf::getInstance()->log(kProgress, "Updating outgoing encapsulation for vlan %s", destination.c_str());

  const DestinationIdCorrelator* const correlator = GetDestinationIdCorrelator(destination_id);
  if (correlator == nullptr) return -1;

  const unsigned int flags = MyStationFlags(capabilities);
  const unsigned int vlan_id = limid_to_l3_vlan_vlanid(limid);
  if (resource_manager_->my_station_mng()->UpdateMyStationVlanEntry(vlan_id, vlan_mask_, mac, flags) < 0) return -1;

  // The association follows the VRF only: a move to another VLAN alone leaves it, and the old VLAN's my-station entry,
  // where they are.
  const IntfObject* const intf_object = FindIntf(correlator->intf_id);
  if (intf_object != nullptr && intf_object->vrf() != vrf) {
    if (Dissociate(resource_manager_->ingress_mng(), *intf_object) != 0) return -1;
    if (resource_manager_->ingress_mng()->AssociateVlanToVrf(vlan_id, vrf) != 0) return -1;
  }

  if (resource_manager_->intf_mng()->UpdateIntf(correlator->intf_id, unit(), vrf, vlan_id, mac, mtu, 0) < 0) {
    HalCallbacksItf::getInstance()->log(kFailure, "Error on updating vlan %s", destination.c_str());
    return -1;
  }
  return 0;
}

int HalL3MplsEncapsulationBcm::DestroyVlanOutgoingEncapsulation(unsigned int destination_id) const {
  const IdText destination = DestinationText(destination_id);
  HalCallbacksItf::getInstance()->log(kProgress, "Destroying outgoing encapsulation for vlan %s", destination.c_str());

  const DestinationIdCorrelator* const correlator = GetDestinationIdCorrelator(destination_id);
  if (correlator == nullptr) return -1;
  const IntfObject* const intf_object = FindIntf(correlator->intf_id);
  if (intf_object == nullptr) return -1;

  if (resource_manager_->my_station_mng()->RemoveMyStationVlanEntry(intf_object->vlan_id()) < 0) return -1;
  // The interface is gone when the protocol packet control is switched off.
  const unsigned int vlan_id = intf_object->vlan_id();

  // Every step and every restore asks the interface anew.
  if (Dissociate(resource_manager_->ingress_mng(), *intf_object) != 0) {
    RestoreMyStation(resource_manager_->my_station_mng(), *intf_object, vlan_mask_);
    return -1;
  }

  if (resource_manager_->intf_mng()->DeleteIntf(unit(), correlator->intf_id) < 0) {
    HalCallbacksItf::getInstance()->log(kFailure, "Error on destroying vlan %s", destination.c_str());
    Associate(resource_manager_->ingress_mng(), *intf_object);
    RestoreMyStation(resource_manager_->my_station_mng(), *intf_object, vlan_mask_);
    return -1;
  }

  const fm_vlan_proto_ctrl_t disable = fm_oper_card_hal_l3_mpls_encap_vlan_proto_ctrl_disable(fm_local_slot());
  if (disable(unit(), static_cast<unsigned short>(vlan_id)) != 0) {
    HalCallbacksItf::getInstance()->log(kFailure, "Error disabling VLAN Protocol Packet Control on VLAN %d", vlan_id);
  }

  DeleteDestinationIdCorrelator(destination_id);
  return 0;
}
