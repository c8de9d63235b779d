#include "softcard/tables/StationTable.h"

#include <algorithm>

#include "calls/Text.h"

namespace softcard {
namespace {

Station MakeStation(unsigned vlan_mask, const unsigned char* mac, unsigned flags) {
  Station station{vlan_mask, {}, flags};
  std::copy_n(mac, station.mac.size(), station.mac.begin());
  return station;
}

}  // namespace

int StationTable::Insert(unsigned vlan_id, unsigned vlan_mask, const unsigned char* mac, unsigned flags) {
  return mac ? KeyTable::Insert(vlan_id, MakeStation(vlan_mask, mac, flags)) : static_cast<int>(BCM_E_PARAM);
}

int StationTable::Update(unsigned vlan_id, unsigned vlan_mask, const unsigned char* mac, unsigned flags) {
  return mac ? Write(vlan_id, MakeStation(vlan_mask, mac, flags)) : static_cast<int>(BCM_E_PARAM);
}

std::vector<std::string> StationTable::Rows() const {
  std::vector<std::string> lines;
  for (const auto& [vlan_id, station] : rows())
    lines.push_back("station " + Text(vlan_id) + ": " +
                    Fields(" ", "mask", Hex{station.vlan_mask}, "mac", station.mac, "flags", Hex{station.flags}));
  return lines;
}

}  // namespace softcard
