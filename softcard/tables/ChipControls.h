#ifndef SOFTCARD_TABLES_CHIP_CONTROLS_H
#define SOFTCARD_TABLES_CHIP_CONTROLS_H

#include <vector>

#include "bcm/switch.h"
#include "softcard/tables/KeyTable.h"
#include "softcard/tables/Row.h"

namespace softcard {

/// The VLANs whose protocol packet control is on. Switching it to what it is already is a success.
class ProtocolControl : KeyTable<unsigned, bool> {
 public:
  static const TableDescription kDescription;

  explicit ProtocolControl(unsigned size) : KeyTable(size) {}

  /// BCM_E_PARAM for no VLAN, BCM_E_FULL.
  int Enable(unsigned vlan_id);
  int Disable(unsigned vlan_id);

  using KeyTable::rows;
  using KeyTable::size;
  std::vector<Row> Rows() const;
};

/// The chip-wide controls that have been set.
class SwitchControls : KeyTable<bcm_switch_control_t, int> {
 public:
  static const TableDescription kDescription;

  SwitchControls() : KeyTable(2) {}

  /// BCM_E_UNAVAIL for a control that the chip does not have, BCM_E_PARAM for a mode other than 0 and 1.
  int Set(bcm_switch_control_t control, int mode);

  using KeyTable::rows;
  using KeyTable::size;
  std::vector<Row> Rows() const;
};

}  // namespace softcard

#endif
