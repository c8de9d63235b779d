#ifndef HAL_INTF_MANAGER_H
#define HAL_INTF_MANAGER_H

#pragma GCC visibility push(default)

class IntfObject;

/// Makes, changes and deletes L3 interfaces, and owns the objects that describe them.
class IntfManager {
 public:
  /// Returns the new interface's id, positive, or a negative SDK code. `mac` is six bytes, read during the call.
  int CreateIntf(unsigned int unit, int vrf, unsigned int vlan_id, unsigned char* mac, unsigned int mtu,
                 unsigned int l3_flags);
  /// Returns the id, which stays the same, or a negative SDK code.
  int UpdateIntf(int intf, unsigned int unit, int vrf, unsigned int vlan_id, unsigned char* mac, unsigned int mtu,
                 unsigned int l3_flags);
  int DeleteIntf(int unit, int intf);
  /// False when there is no such interface: `*object` is then not to be read.
  bool GetIntfObject(int intf, IntfObject** object);
};

#pragma GCC visibility pop

#endif
