#pragma once

class IngressManager {
 public:
  int CreateIngress(int unit, unsigned vrf, unsigned flags) const;
  int DeleteIngress(int unit, unsigned vrf) const;
  static int AssociateVlanToVrf(int vlan, unsigned vrf);
  static int DissociateVlanfromVrf(int vlan, unsigned vrf);
};
