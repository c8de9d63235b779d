#include <algorithm>
#include <utility>

#include "HalL3MplsEncapsulationBcm.h"
#include "Label.h"
#include "LogText.h"
#include "hal/EgressManager.h"
#include "hal/HalCallbacksItf.h"

namespace {

bool Holds(const std::vector<ActionFlags>& actions, ActionFlags action) {
  return std::count(actions.begin(), actions.end(), action) != 0;
}

}  // namespace

HalL3MplsEncapsulationBcm::HostIntf HalL3MplsEncapsulationBcm::FindHostIntf(unsigned int vlan_destination_id,
                                                                            int* intf_id,
                                                                            unsigned short* vlan_id) const {
  *intf_id = invalid_intf_;
  *vlan_id = 0;
  if (vlan_destination_id == 0) return HostIntf::kFound;
  const DestinationIdCorrelator* const vlan_correlator = GetDestinationIdCorrelator(vlan_destination_id);
  if (vlan_correlator == nullptr) return HostIntf::kNoVlanDestination;
  *intf_id = vlan_correlator->intf_id;
  const IntfObject* const intf_object = FindIntf(*intf_id);
  if (intf_object == nullptr) return HostIntf::kNoIntf;
  *vlan_id = static_cast<unsigned short>(intf_object->vlan_id());
  return HostIntf::kFound;
}

int HalL3MplsEncapsulationBcm::InstallHostOutgoingEncapsulation(unsigned int destination_id,
                                                                unsigned int vlan_destination_id, limid_t limid,
                                                                std::vector<ActionFlags> actions,
                                                                unsigned char* mac) const {
  const IdText destination = DestinationText(destination_id);
  HalCallbacksItf::getInstance()->log(kProgress, "Installing outgoing encapsulation for host %s", destination.c_str());

  // A new id is expected to be absent: its level-3 miss line belongs to every successful install.
  if (GetDestinationIdCorrelator(destination_id) != nullptr) {
    HalCallbacksItf::getInstance()->log(kFailure, "There is already a host with %s. Can't create a new one.",
                                        destination.c_str());
    return -1;
  }

  int intf_id;
  unsigned short vlan_id;
  const HostIntf host_intf = FindHostIntf(vlan_destination_id, &intf_id, &vlan_id);
  if (host_intf == HostIntf::kNoIntf) {
    HalCallbacksItf::getInstance()->log(kFailure,
                                        "Couldn't install outgoing encapsulation for host %s, because %s wasn't found",
                                        destination.c_str(), IntfText(intf_id).c_str());
  }
  if (host_intf != HostIntf::kFound) return -1;

  const int port = GetPort(limid);
  const bool to_cpu = Holds(actions, HAL_ACTION_TO_CPU);
  const bool drop = Holds(actions, HAL_ACTION_DROP);
  const int egress_id = resource_manager_->egress_mng()->CreateEgress(intf_id, mac, vlan_id, unit(), port, kNoLabel,
                                                                      to_cpu, drop, EXP_LABEL_CONTROL_NONE);
  if (egress_id < 0) {
    HalCallbacksItf::getInstance()->log(kFailure, "Couldn't install outgoing encapsulation for host %s",
                                        destination.c_str());
    return -1;
  }

  RecordDestination(destination_id, intf_id, egress_id);
  return 0;
}

int HalL3MplsEncapsulationBcm::ReplaceHostOutgoingEncapsulation(unsigned int destination_id,
                                                                unsigned int vlan_destination_id, limid_t limid,
                                                                std::vector<ActionFlags> actions,
                                                                unsigned char* mac) const {
  const IdText destination = DestinationText(destination_id);
  HalCallbacksItf::getInstance()->log(kProgress, "Updating outgoing encapsulation for host %s", destination.c_str());

  DestinationIdCorrelator* const correlator = GetDestinationIdCorrelator(destination_id);
  if (correlator == nullptr) {
    // Through the virtual table: an override of the install is the one that counts.
    return InstallHostOutgoingEncapsulation(destination_id, vlan_destination_id, limid, std::move(actions), mac);
  }

  int intf_id;
  unsigned short vlan_id;
  if (FindHostIntf(vlan_destination_id, &intf_id, &vlan_id) != HostIntf::kFound) return -1;

  const int port = GetPort(limid);
  const bool to_cpu = Holds(actions, HAL_ACTION_TO_CPU);
  const bool drop = Holds(actions, HAL_ACTION_DROP);
  const int rv = resource_manager_->egress_mng()->UpdateEgress(correlator->egress_id, intf_id, mac, vlan_id, unit(),
                                                               port, kNoLabel, to_cpu, drop, EXP_LABEL_CONTROL_NONE);
  if (rv < 0) {
    HalCallbacksItf::getInstance()->log(kFailure, "Update of the host %s failed", destination.c_str());
    return rv;  // the platform's own status, which no other encapsulation operation passes on
  }

  correlator->intf_id = intf_id;
  return 0;
}

int HalL3MplsEncapsulationBcm::DestroyHostOutgoingEncapsulation(unsigned int destination_id) const {
  const IdText destination = DestinationText(destination_id);
  HalCallbacksItf::getInstance()->log(kProgress, "Destroying outgoing encapsulation for host %s", destination.c_str());

  const DestinationIdCorrelator* const correlator = GetDestinationIdCorrelator(destination_id);
  if (correlator == nullptr) {
    HalCallbacksItf::getInstance()->log(
        kRejected, "Couldn't find DestinationIdCorrelator with host %s, but it is OK since it would be destroyed.",
        destination.c_str());
    return 0;
  }

  if (resource_manager_->egress_mng()->DeleteEgress(correlator->egress_id) < 0) {
    HalCallbacksItf::getInstance()->log(kFailure, "Couldn't destroy outgoing encapsulation for host %s",
                                        destination.c_str());
    return -1;
  }

  DeleteDestinationIdCorrelator(destination_id);
  return 0;
}
