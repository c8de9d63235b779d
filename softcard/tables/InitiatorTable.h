#ifndef SOFTCARD_TABLES_INITIATOR_TABLE_H
#define SOFTCARD_TABLES_INITIATOR_TABLE_H

#include <string>
#include <vector>

#include "bcm/mpls.h"
#include "softcard/tables/IntfTable.h"
#include "softcard/tables/KeyTable.h"

namespace softcard {

/// The labels that an interface pushes, the innermost first; none: it pushes nothing.
using LabelStack = std::vector<bcm_mpls_egress_label_t>;

/// MPLS tunnel initiators by L3 interface.
class InitiatorTable : public KeyTable<int, LabelStack> {
 public:
  InitiatorTable(const IntfTable& intfs, unsigned size) : KeyTable(size), intfs_(intfs) {}

  /// Gives the interface this initiator in place of the one it may have. BCM_E_PARAM for more than two labels, a label
  /// above 20 bits, an EXP above 3 bits; BCM_E_NOT_FOUND for an unknown interface; BCM_E_FULL.
  int Set(int intf, int num_labels, const bcm_mpls_egress_label_t* labels);
  /// BCM_E_UNAVAIL when the interface has none.
  int Clear(int intf);

  std::vector<std::string> Rows() const;

 private:
  const IntfTable& intfs_;
};

/// "initiator 2: labels=[{flags=0x11, label=100, qos_map=1, exp=0, ttl=255}]".
std::string InitiatorText(int intf, const LabelStack& stack);

}  // namespace softcard

#endif
