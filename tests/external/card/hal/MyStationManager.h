#pragma once

class MyStationManager {
 public:
  int InsertMyStationVlanEntry(unsigned vlan, unsigned mask, const unsigned char* mac, unsigned flags = 0);
  int UpdateMyStationVlanEntry(unsigned vlan, unsigned mask, const unsigned char* mac, unsigned flags = 0);
  int RemoveMyStationVlanEntry(unsigned vlan);

 private:
  unsigned entries_ = 0;
};
