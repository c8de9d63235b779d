#ifndef HAL_EGRESS_MANAGER_H
#define HAL_EGRESS_MANAGER_H

#pragma GCC visibility push(default)

/// What the egress object's own MPLS label is.
enum ExpLabelControl : int {
  EXP_LABEL_CONTROL_NONE = 0,  ///< no label, whatever the label argument says
  EXP_LABEL_CONTROL_SWAP = 1,  ///< swapped in
  EXP_LABEL_CONTROL_VC = 2,    ///< the label of a virtual circuit
};

/// Makes, changes and deletes L3 egress objects, the chip's next hops.
///
/// `intf` -1 is no interface, `label` 0xFFFFFFFF no label. `mac` is the next hop's address, six bytes, read during the
/// call. `to_cpu` sends packets to the CPU, `drop` drops them; a dropping object needs no port.
class EgressManager {
 public:
  /// Returns the new object's id, positive, or a negative SDK code.
  int CreateEgress(int intf, unsigned char* mac, unsigned short vlan_id, int unit, int port, unsigned int label,
                   bool to_cpu, bool drop, ExpLabelControl control);
  int UpdateEgress(int egress, int intf, unsigned char* mac, unsigned short vlan_id, int unit, int port,
                   unsigned int label, bool to_cpu, bool drop, ExpLabelControl control);
  int DeleteEgress(int egress);
};

#pragma GCC visibility pop

#endif
