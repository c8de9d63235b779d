#include "softcard/tables/VrfTables.h"

#include "calls/Text.h"

namespace softcard {

std::vector<std::string> VrfTable::Rows() const {
  std::vector<std::string> lines;
  for (const auto& [vrf, flags] : rows()) lines.push_back("vrf " + Text(vrf) + ": " + Fields(" ", "flags", Hex{flags}));
  return lines;
}

int AssociationTable::Associate(int vlan_id, unsigned vrf) {
  return vrfs_.Exists(vrf) ? Insert(vlan_id, vrf) : static_cast<int>(BCM_E_NOT_FOUND);
}

int AssociationTable::Dissociate(int vlan_id, unsigned vrf) {
  const unsigned* const associated = Find(vlan_id);
  return associated && *associated == vrf ? Delete(vlan_id) : static_cast<int>(BCM_E_NOT_FOUND);
}

std::vector<std::string> AssociationTable::Rows() const {
  std::vector<std::string> lines;
  for (const auto& [vlan_id, vrf] : rows())
    lines.push_back("association " + Text(vlan_id) + ": " + Fields(" ", "vrf", vrf));
  return lines;
}

}  // namespace softcard
