#ifndef SOFTCARD_TABLES_CHIP_CONTROLS_H
#define SOFTCARD_TABLES_CHIP_CONTROLS_H

#include <string>
#include <vector>

#include "bcm/switch.h"
#include "softcard/tables/KeyTable.h"

namespace softcard {

/// The VLANs whose protocol packet control is on. Switching it to what it is already is a success.
class ProtocolControl : public KeyTable<unsigned, bool> {
 public:
  explicit ProtocolControl(unsigned size) : KeyTable(size) {}

  int Enable(unsigned vlan_id) { return Write(vlan_id, true); }
  int Disable(unsigned vlan_id) {
    Delete(vlan_id);
    return BCM_E_NONE;
  }

  std::vector<std::string> Rows() const;
};

/// The chip-wide controls that have been set.
class SwitchControls : public KeyTable<bcm_switch_control_t, int> {
 public:
  SwitchControls() : KeyTable(2) {}

  /// BCM_E_UNAVAIL for a control that the chip does not have, BCM_E_PARAM for a mode other than 0 and 1.
  int Set(bcm_switch_control_t control, int mode);

  std::vector<std::string> Rows() const;
};

}  // namespace softcard

#endif
