#ifndef HAL_INGRESS_MANAGER_H
#define HAL_INGRESS_MANAGER_H

#pragma GCC visibility push(default)

/// VRFs and the VLANs that are routed in them. All results are SDK statuses.
class IngressManager {
 public:
  /// The third argument is the platform's own; the encapsulation module passes 0.
  int CreateIngress(int unit, unsigned int vrf, unsigned int flags);
  int DeleteIngress(int unit, unsigned int vrf);
  int AssociateVlanToVrf(int vlan_id, unsigned int vrf);
  int DissociateVlanfromVrf(int vlan_id, unsigned int vrf);
};

#pragma GCC visibility pop

#endif
