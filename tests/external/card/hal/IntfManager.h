#pragma once

class IntfObject;

class IntfManager {
 public:
  virtual ~IntfManager() = default;
  virtual bool GetIntfObject(int intf, IntfObject** object) = 0;
  virtual int DeleteIntf(int unit, int intf) = 0;
  virtual int UpdateIntf(int intf, unsigned unit, int vrf, unsigned vlan, unsigned char* mac, unsigned mtu,
                         unsigned flags) = 0;
  virtual int CreateIntf(unsigned unit, int vrf, unsigned vlan, unsigned char* mac, unsigned mtu, unsigned flags) = 0;
};
