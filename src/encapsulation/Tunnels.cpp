#include <utility>

#include "HalL3MplsEncapsulationBcm.h"
#include "Label.h"
#include "LogText.h"
#include "hal/EgressManager.h"
#include "hal/HalCallbacksItf.h"
#include "hal/IntfManager.h"

// The base interface's values are read one by one, between the manager and the call that takes them: left to the call,
// their order would be the compiler's choice.

int HalL3MplsEncapsulationBcm::CreateTunnelIntf(const IntfObject& base) const {
  IntfManager* const intf_mng = resource_manager_->intf_mng();
  const unsigned int vrf = base.vrf();
  const unsigned int vlan_id = base.vlan_id();
  MacAddress mac = base.macsa();
  const unsigned int mtu = base.mtu();
  return intf_mng->CreateIntf(unit(), vrf, vlan_id, mac.data(), mtu, 0);
}

int HalL3MplsEncapsulationBcm::UpdateTunnelIntf(int intf_id, const IntfObject& base) const {
  IntfManager* const intf_mng = resource_manager_->intf_mng();
  const unsigned int vrf = base.vrf();
  const unsigned int vlan_id = base.vlan_id();
  MacAddress mac = base.macsa();
  const unsigned int mtu = base.mtu();
  return intf_mng->UpdateIntf(intf_id, unit(), vrf, vlan_id, mac.data(), mtu, 0);
}

void HalL3MplsEncapsulationBcm::DeleteIntf(int intf_id) const {
  resource_manager_->intf_mng()->DeleteIntf(unit(), intf_id);
}

bool HalL3MplsEncapsulationBcm::InstallMplsVCTunnel(IntfObject* intf_object, int port, unsigned char* mac,
                                                    std::vector<unsigned int> labels, int* egress_id, bool drop) const {
  const char* const capability = MplsCapabilityText(HAL_MPLS_CAPABILITY_VC_LABEL);
  const unsigned int label = LabelAt(labels, 0, kNoLabel);
  if (label == kImplicitNull) {
    HalCallbacksItf::getInstance()->log(kFailure, "Invalid label informed!");
    return false;
  }
  HalCallbacksItf::getInstance()->log(kProgress,
                                      "Installing tunnel outgoing encapsulation for %s: %d (Total labels informed: %d)",
                                      capability, label, static_cast<int>(labels.size()));

  EgressManager* const egress_mng = resource_manager_->egress_mng();
  const int intf_id = intf_object->id();
  const auto vlan_id = static_cast<unsigned short>(intf_object->vlan_id());
  *egress_id = egress_mng->CreateEgress(intf_id, mac, vlan_id, unit(), port, label, false, drop, EXP_LABEL_CONTROL_VC);
  if (*egress_id < 0) {
    HalCallbacksItf::getInstance()->log(kFailure, "Error creating an egress for tunnel %s!", capability);
    return false;
  }
  return true;
}

bool HalL3MplsEncapsulationBcm::ReplaceMplsVCTunnel(IntfObject* intf_object, int port, unsigned char* mac,
                                                    std::vector<unsigned int> labels, int* egress_id, bool drop) const {
  const char* const capability = MplsCapabilityText(HAL_MPLS_CAPABILITY_VC_LABEL);
  const unsigned int label = LabelAt(labels, 0, kNoLabel);
  if (label == kImplicitNull) {
    HalCallbacksItf::getInstance()->log(kFailure, "Invalid label informed!");
    return false;
  }
  HalCallbacksItf::getInstance()->log(kProgress,
                                      "Updating tunnel outgoing encapsulation for %s: %d (Total labels informed: %d)",
                                      capability, label, static_cast<int>(labels.size()));

  EgressManager* const egress_mng = resource_manager_->egress_mng();
  const int intf_id = intf_object->id();
  const auto vlan_id = static_cast<unsigned short>(intf_object->vlan_id());
  if (egress_mng->UpdateEgress(*egress_id, intf_id, mac, vlan_id, unit(), port, label, false, drop,
                               EXP_LABEL_CONTROL_VC) < 0) {
    HalCallbacksItf::getInstance()->log(kFailure, "Error updating an egress for tunnel %s!", capability);
    return false;
  }
  return true;
}

bool HalL3MplsEncapsulationBcm::InstallMplsForwardPushTunnel(en_HalMplsCapabilities capability, IntfObject* intf_object,
                                                             int port, unsigned char* mac,
                                                             std::vector<unsigned int> labels, int* intf_id,
                                                             int* egress_id, bool drop) const {
  HalCallbacksItf::getInstance()->log(kProgress, "Installing tunnel outgoing encapsulation for %s",
                                      MplsCapabilityText(capability));

  *intf_id = CreateTunnelIntf(*intf_object);
  if (*intf_id < 0) {
    HalCallbacksItf::getInstance()->log(kFailure, "Error creating an intf for tunnel %s!",
                                        MplsCapabilityText(capability));
    return false;
  }
  if (SetMplsTunnelInitiator(capability, *intf_id, std::move(labels)) < 0) {
    DeleteIntf(*intf_id);
    return false;
  }

  EgressManager* const egress_mng = resource_manager_->egress_mng();
  const auto vlan_id = static_cast<unsigned short>(intf_object->vlan_id());
  *egress_id =
      egress_mng->CreateEgress(*intf_id, mac, vlan_id, unit(), port, kNoLabel, false, drop, EXP_LABEL_CONTROL_NONE);
  if (*egress_id < 0) {
    ClearMplsTunnelInitiator(*intf_id);
    DeleteIntf(*intf_id);
    HalCallbacksItf::getInstance()->log(kFailure, "Error creating an egress for tunnel %s!",
                                        MplsCapabilityText(capability));
    return false;
  }
  return true;
}

bool HalL3MplsEncapsulationBcm::ReplaceMplsForwardPushTunnel(en_HalMplsCapabilities capability, IntfObject* intf_object,
                                                             int port, unsigned char* mac,
                                                             std::vector<unsigned int> labels, int* intf_id,
                                                             int* egress_id, bool drop) const {
  HalCallbacksItf::getInstance()->log(kProgress, "Updating tunnel outgoing encapsulation for %s.",
                                      MplsCapabilityText(capability));

  // An interface without an initiator is silent, and yet a failure here.
  if (ClearMplsTunnelInitiator(*intf_id) < 0) return false;
  *intf_id = UpdateTunnelIntf(*intf_id, *intf_object);
  if (*intf_id < 0) {
    HalCallbacksItf::getInstance()->log(kFailure, "Error updating an intf for tunnel %s!",
                                        MplsCapabilityText(capability));
    return false;
  }
  if (SetMplsTunnelInitiator(capability, *intf_id, std::move(labels)) < 0) return false;

  // 0, where the install passes no label: this is meant.
  constexpr unsigned int kReplaceLabel = 0;
  EgressManager* const egress_mng = resource_manager_->egress_mng();
  const auto vlan_id = static_cast<unsigned short>(intf_object->vlan_id());
  if (egress_mng->UpdateEgress(*egress_id, *intf_id, mac, vlan_id, unit(), port, kReplaceLabel, false, drop,
                               EXP_LABEL_CONTROL_NONE) < 0) {
    HalCallbacksItf::getInstance()->log(kFailure, "Error updating an egress for tunnel %s!",
                                        MplsCapabilityText(capability));
    return false;
  }
  return true;
}
