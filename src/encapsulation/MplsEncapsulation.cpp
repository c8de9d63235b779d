#include <utility>

#include "../update/HalL3MplsEncapsulationUpd.h"
#include "HalL3MplsEncapsulationBcm.h"
#include "LogText.h"
#include "bcm/error.h"
#include "hal/EgressManager.h"
#include "hal/HalCallbacksItf.h"

// The check of the vectors lets one capability besides Protection through. Each capability is handled for itself all
// the same, and nothing that one of them programmed is undone when a later one fails.

int HalL3MplsEncapsulationBcm::InstallMplsUnprotectedOutgoingEncapsulation(
    unsigned int destination_id, unsigned int vlan_destination_id, limid_t limid, unsigned char* mac,
    std::vector<unsigned int> labels, std::vector<en_HalMplsCapabilities> capabilities, ActionFlags action) const {
  const IdText destination = DestinationText(destination_id);
  HalCallbacksItf::getInstance()->log(kProgress, "Installing outgoing encapsulation for mpls %s", destination.c_str());

  if (!CheckMplsVectorEntries(labels, capabilities) || action == HAL_ACTION_TO_CPU) return -1;

  // A new id is expected to be absent: its level-3 miss line belongs to every successful install.
  DestinationIdCorrelator* correlator;
  if (GetDestinationIdCorrelator(destination_id, &correlator)) {
    HalCallbacksItf::getInstance()->log(
        kFailure, "There is already an outgoind encapsulation with %s. Can't create a new one.", destination.c_str());
    return -1;
  }
  DestinationIdCorrelator* vlan_correlator;
  if (!GetDestinationIdCorrelator(vlan_destination_id, &vlan_correlator)) return -1;
  IntfObject* const vlan_intf = FindIntf(vlan_correlator->intf_id);
  if (vlan_intf == nullptr) return -1;

  // A dropping encapsulation needs no port, and yet its lim id has to be one that the card knows.
  const int resolved_port = GetPort(limid);
  const bool drop = action == HAL_ACTION_DROP;
  const int port = drop ? BCM_E_PORT : resolved_port;

  int intf_id = vlan_correlator->intf_id;
  int egress_id = 0;
  const auto fail = [&destination](en_HalMplsCapabilities capability) {
    HalCallbacksItf::getInstance()->log(kFailure, "Can't install %s encapsulation with %s",
                                        MplsCapabilityText(capability), destination.c_str());
    return -1;
  };
  // The check has let through a single capability that takes labels.
  const auto take_labels = [&labels] { return std::move(labels); };
  for (const en_HalMplsCapabilities capability : capabilities) {
    switch (capability) {
      case HAL_MPLS_CAPABILITY_PROTECTION:
        HalCallbacksItf::getInstance()->log(kNotice, "Protection action is not implemented yet");
        break;
      case HAL_MPLS_CAPABILITY_SWAP:
        if (!InstallMplsSwapTunnel(vlan_intf, port, mac, take_labels(), &intf_id, &egress_id, drop)) {
          return fail(capability);
        }
        break;
      case HAL_MPLS_CAPABILITY_FORWARD:
      case HAL_MPLS_CAPABILITY_PUSH:
        if (!InstallMplsForwardPushTunnel(capability, vlan_intf, port, mac, take_labels(), &intf_id, &egress_id,
                                          drop)) {
          return fail(capability);
        }
        break;
      case HAL_MPLS_CAPABILITY_VC_LABEL:
        if (!InstallMplsVCTunnel(vlan_intf, port, mac, take_labels(), &egress_id, drop)) return fail(capability);
        // It has no interface of its own, and the destroy must leave the VLAN's alone.
        intf_id = invalid_intf_;
        break;
      default:
        HalCallbacksItf::getInstance()->log(kFailure, "Wrong %s with %s", MplsCapabilityText(capability),
                                            destination.c_str());
        return -1;
    }
  }

  RecordDestination(destination_id, intf_id, egress_id);
  return 0;
}

int HalL3MplsEncapsulationBcm::ReplaceMplsUnprotectedOutgoingEncapsulation(
    unsigned int destination_id, unsigned int vlan_destination_id, limid_t limid, unsigned char* mac,
    std::vector<unsigned int> labels, std::vector<en_HalMplsCapabilities> capabilities, ActionFlags action) const {
  const IdText destination = DestinationText(destination_id);
  HalCallbacksItf::getInstance()->log(kProgress, "Updating outgoing encapsulation for mpls %s", destination.c_str());

  if (!CheckMplsVectorEntries(labels, capabilities) || action == HAL_ACTION_TO_CPU) return -1;

  DestinationIdCorrelator* correlator;
  if (!GetDestinationIdCorrelator(destination_id, &correlator)) {
    HalCallbacksItf::getInstance()->log(kFailure, "Couldn't find DestinationIdCorrelator with mpls %s",
                                        destination.c_str());
    return -1;
  }
  const DestinationIdCorrelator old = *correlator;
  int intf_id = old.intf_id;
  int egress_id = old.egress_id;
  IntfObject* mpls_intf = nullptr;
  if (intf_id != invalid_intf_) {
    mpls_intf = FindIntf(intf_id);
    if (mpls_intf == nullptr) return -1;
    HalCallbacksItf::getInstance()->log(kNotice, "Mpls Intf Object: %s", mpls_intf->ToString(true).c_str());
  }

  DestinationIdCorrelator* vlan_correlator;
  if (!GetDestinationIdCorrelator(vlan_destination_id, &vlan_correlator)) return -1;
  IntfObject* const vlan_intf = FindIntf(vlan_correlator->intf_id);
  if (vlan_intf == nullptr) return -1;
  HalCallbacksItf::getInstance()->log(kNotice, "Vlan Intf Object: %s", vlan_intf->ToString(true).c_str());

  // A dropping encapsulation needs no port, and yet its lim id has to be one that the card knows.
  const int resolved_port = GetPort(limid);
  const bool drop = action == HAL_ACTION_DROP;
  const int port = drop ? BCM_E_PORT : resolved_port;

  const auto fail = [&destination](en_HalMplsCapabilities capability) {
    HalCallbacksItf::getInstance()->log(kFailure, "Can't update %s encapsulation with %s",
                                        MplsCapabilityText(capability), destination.c_str());
    return -1;
  };
  // The check has let through a single capability that takes labels.
  const auto take_labels = [&labels] { return std::move(labels); };
  for (const en_HalMplsCapabilities capability : capabilities) {
    switch (capability) {
      case HAL_MPLS_CAPABILITY_PROTECTION:
        HalCallbacksItf::getInstance()->log(kNotice, "Protection action is not implemented yet");
        break;
      case HAL_MPLS_CAPABILITY_SWAP:
        // Without an interface there is no old tunnel to start from.
        if (mpls_intf == nullptr || !ReplaceMplsSwapTunnel(vlan_intf, mpls_intf->tunnel().type(), port, mac,
                                                           take_labels(), &intf_id, &egress_id, drop)) {
          return fail(capability);
        }
        break;
      case HAL_MPLS_CAPABILITY_FORWARD:
      case HAL_MPLS_CAPABILITY_PUSH:
        if (!ReplaceMplsForwardPushTunnel(capability, vlan_intf, port, mac, take_labels(), &intf_id, &egress_id,
                                          drop)) {
          return fail(capability);
        }
        hal_encap::HalL3MplsEncapsulationUpd::GetInstance()->ExecuteMplsUpdate(static_cast<int>(destination_id),
                                                                               static_cast<unsigned int>(port));
        break;
      case HAL_MPLS_CAPABILITY_VC_LABEL:
        // An interface that the destination held stays recorded, unlike in the install.
        if (!ReplaceMplsVCTunnel(vlan_intf, port, mac, take_labels(), &egress_id, drop)) return fail(capability);
        break;
      default:
        // A lower level and a shorter text than the install's: this is meant.
        HalCallbacksItf::getInstance()->log(kRejected, "%s with %s", MplsCapabilityText(capability),
                                            destination.c_str());
        return -1;
    }
  }

  // A client that destroyed, installed anew or replaced the destination has the last word: the record is looked for
  // again, and the ids go only into one that still holds the old ones.
  auto& correlators = hal_bcm_common_->destination_id_correlators;
  const auto found = correlators.find(static_cast<int>(destination_id));
  if (found != correlators.end() && found->second.intf_id == old.intf_id && found->second.egress_id == old.egress_id) {
    found->second.intf_id = intf_id;
    found->second.egress_id = egress_id;
  }
  return 0;
}

int HalL3MplsEncapsulationBcm::DestroyMplsUnprotectedOutgoingEncapsulation(unsigned int destination_id) const {
  HalCallbacksItf::getInstance()->log(kProgress, "Destroying outgoing encapsulation for mpls %s",
                                      DestinationText(destination_id).c_str());

  DestinationIdCorrelator* correlator;
  if (!GetDestinationIdCorrelator(destination_id, &correlator)) return -1;

  // What the chip answers does not matter: the destination is gone afterwards.
  resource_manager_->egress_mng()->DeleteEgress(correlator->egress_id);
  if (correlator->intf_id != invalid_intf_) {
    IntfObject* const intf_object = FindIntf(correlator->intf_id);
    // An interface without a tunnel is the VLAN's own and stays.
    if (intf_object != nullptr && intf_object->tunnel().type() == TunnelObject::kTunnelTypeMpls) {
      ClearMplsTunnelInitiator(correlator->intf_id);
      HalCallbacksItf::getInstance()->log(kProgress, "Destroying %s", intf_object->ToString(true).c_str());
      DeleteIntf(correlator->intf_id);
    }
  }

  DeleteDestinationIdCorrelator(destination_id);
  return 0;
}
