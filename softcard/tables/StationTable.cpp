#include "softcard/tables/StationTable.h"

#include <algorithm>

#include "softcard/Limits.h"
#include "softcard/tables/Sorted.h"

namespace softcard {
namespace {

Station MakeStation(unsigned vlan_mask, const unsigned char* mac, unsigned flags) {
  Station station{vlan_mask, {}, flags};
  std::copy_n(mac, station.mac.size(), station.mac.begin());
  return station;
}

}  // namespace

using calls::Kind;

const TableDescription StationTable::kDescription = {
    "stations",
    "station",
    Origin::kMadeByRequests,
    {"vlan", Kind::kNumber},
    {{"mask", Kind::kHex}, {"mac", Kind::kMac}, {"flags", Kind::kHex}}};

int StationTable::Insert(unsigned vlan_id, unsigned vlan_mask, const unsigned char* mac, unsigned flags) {
  if (!mac || !IsVlan(vlan_id)) return BCM_E_PARAM;
  return KeyTable::Insert(vlan_id, MakeStation(vlan_mask, mac, flags));
}

int StationTable::Update(unsigned vlan_id, unsigned vlan_mask, const unsigned char* mac, unsigned flags) {
  if (!mac || !IsVlan(vlan_id)) return BCM_E_PARAM;
  return Write(vlan_id, MakeStation(vlan_mask, mac, flags));
}

int StationTable::Remove(unsigned vlan_id) { return IsVlan(vlan_id) ? Delete(vlan_id) : static_cast<int>(BCM_E_PARAM); }

Row MakeRow(unsigned vlan_id, const Station& station) {
  using calls::ToValue;
  return {&StationTable::kDescription,
          ToValue(vlan_id),
          {ToValue(station.vlan_mask), ToValue(station.mac), ToValue(station.flags)}};
}

std::vector<Row> StationTable::Rows() const {
  std::vector<Row> result;
  for (const auto& [vlan_id, station] : Sorted(rows())) result.push_back(MakeRow(vlan_id, station));
  return result;
}

}  // namespace softcard
