#ifndef HAL_MY_STATION_MANAGER_H
#define HAL_MY_STATION_MANAGER_H

#pragma GCC visibility push(default)

/// My-station entries: the addresses whose frames the router terminates, one per VLAN. `mac` is six bytes, read during
/// the call; `vlan_mask` says which bits of the VLAN id are matched. All results are SDK statuses.
class MyStationManager {
 public:
  /// Refuses a VLAN that has an entry.
  int InsertMyStationVlanEntry(unsigned int vlan_id, unsigned int vlan_mask, const unsigned char* mac,
                               unsigned int flags);
  /// Writes the VLAN's entry, whether or not it had one.
  int UpdateMyStationVlanEntry(unsigned int vlan_id, unsigned int vlan_mask, const unsigned char* mac,
                               unsigned int flags);
  int RemoveMyStationVlanEntry(unsigned int vlan_id);
};

#pragma GCC visibility pop

#endif
