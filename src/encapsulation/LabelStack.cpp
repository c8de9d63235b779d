#include <utility>

#include "HalL3MplsEncapsulationBcm.h"
#include "Label.h"
#include "LogText.h"
#include "bcm/error.h"
#include "hal/HalCallbacksItf.h"

namespace {

/// The reserved null labels are never pushed.
bool IsPushed(unsigned int label) { return label != kExplicitNull && label != kImplicitNull; }

}  // namespace

bool HalL3MplsEncapsulationBcm::CheckMplsVectorEntries(std::vector<unsigned int> labels,
                                                       std::vector<en_HalMplsCapabilities> capabilities) const {
  if (capabilities.empty()) {
    HalCallbacksItf::getInstance()->log(kRejected, "No capability provided! Returning false.");
    return false;
  }
  int count = 0;
  for (const en_HalMplsCapabilities capability : capabilities) {
    if (capability == HAL_MPLS_CAPABILITY_PROTECTION) {
      HalCallbacksItf::getInstance()->log(kNotice, "Tunnel Mpls Protection is not available and it will be ignored!");
      continue;
    }
    if (capability == HAL_MPLS_CAPABILITY_PUSH && labels.empty()) {
      HalCallbacksItf::getInstance()->log(kRejected, "Push action without labels! Returning false.");
      return false;
    }
    if (capability == HAL_MPLS_CAPABILITY_VC_LABEL && labels.empty()) {
      HalCallbacksItf::getInstance()->log(kRejected, "VC label action without labels! Returning false.");
      return false;
    }
    ++count;
  }
  if (count != 1) {
    HalCallbacksItf::getInstance()->log(
        kRejected, "Invalid counter action (%d) to configure mpls tunnel! Returning false.", count);
    return false;
  }
  return true;
}

int HalL3MplsEncapsulationBcm::FillMplsLabels(en_HalMplsCapabilities capability, bcm_mpls_egress_label_t* label0,
                                              bcm_mpls_egress_label_t* label1, std::vector<unsigned int> labels) const {
  HalCallbacksItf::getInstance()->log(kProgress, "%s - %s, labels size is %d", "FillMplsLabels",
                                      MplsCapabilityText(capability), static_cast<int>(labels.size()));

  // Asked for every capability, though only a push uses it.
  const int exp_map_id = hal_bcm_common_->GetMplsExpMapId();
  const auto ttl = static_cast<uint8_t>(mpls_ttl_);
  bcm_mpls_egress_label_t_init(label0);
  bcm_mpls_egress_label_t_init(label1);
  label0->flags = BCM_MPLS_EGRESS_LABEL_TTL_SET;
  label0->ttl = ttl;

  const unsigned int first = LabelAt(labels, 0, kExplicitNull);
  const unsigned int second = LabelAt(labels, 1, kExplicitNull);

  if (capability == HAL_MPLS_CAPABILITY_SWAP) {
    // The first label is swapped in by the egress object; the second is the tunnel's.
    if (!IsPushed(second)) return 0;
    HalCallbacksItf::getInstance()->log(kProgress, "Tunnel Label 0 is %d", second);
    label0->label = second;
    return 1;
  }

  if (capability != HAL_MPLS_CAPABILITY_PUSH) return 0;

  int count = 0;
  if (IsPushed(first)) {
    // The line prints the second label, which is meant.
    HalCallbacksItf::getInstance()->log(kProgress, "Tunnel Label 0 is %d", second);
    label0->label = first;
    count = 1;
  }
  if (IsPushed(second)) {
    if (count == 0) {
      HalCallbacksItf::getInstance()->log(kProgress, "Tunnel Label 0 is %d", second);
      label0->label = second;
    } else {
      HalCallbacksItf::getInstance()->log(kProgress, "Tunnel Label 1 is %d", second);
      label1->label = second;
      label1->flags = BCM_MPLS_EGRESS_LABEL_TTL_SET | BCM_MPLS_EGRESS_LABEL_EXP_REMARK;
      label1->ttl = ttl;
      label1->qos_map_id = exp_map_id;
    }
    ++count;
  }
  label0->flags |= BCM_MPLS_EGRESS_LABEL_EXP_REMARK;
  label0->qos_map_id = exp_map_id;
  return count;
}

int HalL3MplsEncapsulationBcm::SetMplsTunnelInitiator(en_HalMplsCapabilities capability, int intf,
                                                      std::vector<unsigned int> labels) const {
  bcm_mpls_egress_label_t label_array[2];
  const int count = FillMplsLabels(capability, &label_array[0], &label_array[1], std::move(labels));

  IntfObject* const intf_object = FindIntf(intf);
  if (intf_object == nullptr) return BCM_E_NOT_FOUND;
  // Before the chip is asked, and kept when it refuses.
  intf_object->tunnel().set_ttl(static_cast<unsigned int>(mpls_ttl_));
  intf_object->tunnel().set_type(TunnelObject::kTunnelTypeMpls);
  intf_object->tunnel().set_mpls_capability(capability);

  const int rv = bcm_mpls_tunnel_initiator_set(unit(), intf, count, label_array);
  if (rv < 0) {
    HalCallbacksItf::getInstance()->log(kFailure, "Error setting tunnel initiator (%s, rv=%d)", IntfText(intf).c_str(),
                                        rv);
  }
  return rv;
}

int HalL3MplsEncapsulationBcm::ClearMplsTunnelInitiator(int intf) const {
  const int rv = bcm_mpls_tunnel_initiator_clear(unit(), intf);
  // An interface without an initiator is no error to report; the caller still gets the status.
  if (rv < 0 && rv != BCM_E_UNAVAIL) {
    HalCallbacksItf::getInstance()->log(kFailure, "Error clearing tunnel initiator (%s, rv=%d)", IntfText(intf).c_str(),
                                        rv);
  }
  return rv;
}
