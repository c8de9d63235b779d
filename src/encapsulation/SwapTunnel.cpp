#include <utility>

#include "HalL3MplsEncapsulationBcm.h"
#include "Label.h"
#include "LogText.h"
#include "hal/EgressManager.h"
#include "hal/HalCallbacksItf.h"

namespace {

const char* SwapText() { return MplsCapabilityText(HAL_MPLS_CAPABILITY_SWAP); }

/// The label that the egress object swaps in.
unsigned int SwappedLabel(const std::vector<unsigned int>& labels) {
  const unsigned int label = LabelAt(labels, 0, kNoLabel);
  return label == kImplicitNull ? kNoLabel : label;
}

/// With a second label the swapped packet goes into a tunnel, which takes an interface with an initiator.
bool HasTunnelLabel(const std::vector<unsigned int>& labels) { return labels.size() >= 2; }

}  // namespace

template <typename VlanId>
int HalL3MplsEncapsulationBcm::CreateSwapEgress(int intf_id, unsigned char* mac, const VlanId& vlan_id, int port,
                                                unsigned int label, bool drop) const {
  EgressManager* const egress_mng = resource_manager_->egress_mng();
  const auto vlan = static_cast<unsigned short>(vlan_id());
  return egress_mng->CreateEgress(intf_id, mac, vlan, unit(), port, label, false, drop, EXP_LABEL_CONTROL_SWAP);
}

template <typename VlanId>
bool HalL3MplsEncapsulationBcm::InstallSwapTunnel(IntfObject* base, const VlanId& vlan_id, int port, unsigned char* mac,
                                                  std::vector<unsigned int>* labels, int* intf_id, int* egress_id,
                                                  bool drop) const {
  HalCallbacksItf::getInstance()->log(kProgress, "Installing tunnel outgoing encapsulation for %s", SwapText());

  const unsigned int label = SwappedLabel(*labels);
  const bool has_tunnel = HasTunnelLabel(*labels);
  if (has_tunnel) {
    *intf_id = CreateTunnelIntf(*base);
    if (*intf_id < 0) {
      HalCallbacksItf::getInstance()->log(kFailure, "Error creating an intf for tunnel %s!", SwapText());
      return false;
    }
    if (SetMplsTunnelInitiator(HAL_MPLS_CAPABILITY_SWAP, *intf_id, std::move(*labels)) < 0) {
      DeleteIntf(*intf_id);
      return false;
    }
  }

  *egress_id = CreateSwapEgress(*intf_id, mac, vlan_id, port, label, drop);
  if (*egress_id < 0) {
    if (has_tunnel) {
      // The initiator of the interface to leave through, not of the one made above: this is meant.
      ClearMplsTunnelInitiator(base->id());
      DeleteIntf(*intf_id);
    }
    HalCallbacksItf::getInstance()->log(kFailure, "Error creating an egress for tunnel %s!", SwapText());
    return false;
  }
  return true;
}

bool HalL3MplsEncapsulationBcm::InstallMplsSwapTunnel(IntfObject* intf_object, int port, unsigned char* mac,
                                                      std::vector<unsigned int> labels, int* intf_id, int* egress_id,
                                                      bool drop) const {
  const auto vlan_id = [&] { return intf_object->vlan_id(); };
  return InstallSwapTunnel(intf_object, vlan_id, port, mac, &labels, intf_id, egress_id, drop);
}

bool HalL3MplsEncapsulationBcm::ReplaceMplsSwapTunnel(IntfObject* intf_object, TunnelObject::EnumTunnelType old_type,
                                                      int port, unsigned char* mac, std::vector<unsigned int> labels,
                                                      int* intf_id, int* egress_id, bool drop) const {
  HalCallbacksItf::getInstance()->log(
      kProgress, "Updating tunnel outgoing encapsulation for %s. Old tunnel type is %s and labels size is %d",
      SwapText(), TunnelObject::TunnelTypeToString(old_type).c_str(), static_cast<int>(labels.size()));

  const unsigned int label = SwappedLabel(labels);
  const bool has_tunnel = HasTunnelLabel(labels);
  const auto update_egress = [&] {
    EgressManager* const egress_mng = resource_manager_->egress_mng();
    const auto vlan_id = static_cast<unsigned short>(intf_object->vlan_id());
    if (egress_mng->UpdateEgress(*egress_id, *intf_id, mac, vlan_id, unit(), port, label, false, drop,
                                 EXP_LABEL_CONTROL_SWAP) < 0) {
      HalCallbacksItf::getInstance()->log(kFailure, "Error updating an egress for tunnel %s!", SwapText());
      return false;
    }
    return true;
  };

  if (old_type == TunnelObject::kTunnelTypeMpls) {
    // An interface without an initiator is silent, and yet a failure here.
    if (ClearMplsTunnelInitiator(*intf_id) < 0) return false;
    if (!has_tunnel) {
      // A destination can be its own base, which is then gone with the old tunnel: it is not touched any more.
      const int base_intf_id = intf_object->id();
      const unsigned int base_vlan_id = intf_object->vlan_id();
      resource_manager_->egress_mng()->DeleteEgress(*egress_id);
      DeleteIntf(*intf_id);
      *intf_id = base_intf_id;
      // It may fail: the old tunnel is gone all the same, and the record takes what was written.
      const auto vlan_id = [&] { return base_vlan_id; };
      InstallSwapTunnel(intf_object, vlan_id, port, mac, &labels, intf_id, egress_id, drop);
      return true;
    }
    *intf_id = UpdateTunnelIntf(*intf_id, *intf_object);
    if (*intf_id < 0) {
      HalCallbacksItf::getInstance()->log(kFailure, "Error updating an intf for tunnel %s!", SwapText());
      return false;
    }
    return SetMplsTunnelInitiator(HAL_MPLS_CAPABILITY_SWAP, *intf_id, std::move(labels)) >= 0 && update_egress();
  }

  if (has_tunnel) {
    *intf_id = CreateTunnelIntf(*intf_object);
    if (*intf_id < 0) {
      // "updating", though the interface was to be created: this is meant.
      HalCallbacksItf::getInstance()->log(kFailure, "Error updating an intf for tunnel %s!", SwapText());
      return false;
    }
    if (SetMplsTunnelInitiator(HAL_MPLS_CAPABILITY_SWAP, *intf_id, std::move(labels)) >= 0) {
      if (update_egress()) return true;
      ClearMplsTunnelInitiator(*intf_id);
    }
    DeleteIntf(*intf_id);
    return false;
  }

  const int base_intf_id = intf_object->id();
  if (*intf_id != base_intf_id) {
    HalCallbacksItf::getInstance()->log(kProgress, "Intf changed, so updated it to %d.", base_intf_id);
    *intf_id = base_intf_id;
  }
  if (label != kExplicitNull) return update_egress();
  // Label 0 is not updated in place: the egress object is made anew.
  resource_manager_->egress_mng()->DeleteEgress(*egress_id);
  const auto vlan_id = [&] { return intf_object->vlan_id(); };
  *egress_id = CreateSwapEgress(*intf_id, mac, vlan_id, port, label, drop);
  if (*egress_id < 0) {
    HalCallbacksItf::getInstance()->log(kFailure, "Error creating an egress for tunnel %s!", SwapText());
    return false;
  }
  return true;
}
