#ifndef SOFTCARD_TABLES_INITIATOR_TABLE_H
#define SOFTCARD_TABLES_INITIATOR_TABLE_H

#include <algorithm>
#include <array>
#include <vector>

#include "bcm/mpls.h"
#include "softcard/Limits.h"
#include "softcard/tables/IntfTable.h"
#include "softcard/tables/KeyTable.h"
#include "softcard/tables/Row.h"

namespace softcard {

/// The labels that an interface pushes, the innermost first; none: it pushes nothing. They stand in the row itself, so
/// that a packet finds them at once.
class LabelStack {
 public:
  LabelStack() = default;
  /// Of at most kMaxLabels.
  LabelStack(const bcm_mpls_egress_label_t* labels, int count) : count_(count) {
    std::copy_n(labels, count, labels_.begin());
  }

  const bcm_mpls_egress_label_t* begin() const { return labels_.data(); }
  const bcm_mpls_egress_label_t* end() const { return begin() + count_; }

 private:
  std::array<bcm_mpls_egress_label_t, kMaxLabels> labels_{};
  int count_ = 0;
};

/// MPLS tunnel initiators by L3 interface.
class InitiatorTable : KeyTable<int, LabelStack> {
 public:
  static const TableDescription kDescription;

  explicit InitiatorTable(unsigned size) : KeyTable(size) {}

  /// Gives the interface this initiator in place of the one it may have. BCM_E_PARAM for more than two labels, a label
  /// above 20 bits, an EXP above 3 bits; BCM_E_NOT_FOUND for an unknown interface; BCM_E_FULL.
  int Set(int intf, int num_labels, const bcm_mpls_egress_label_t* labels, const IntfTable& intfs);
  /// BCM_E_UNAVAIL when the interface has none.
  int Clear(int intf);

  using KeyTable::Find;
  using KeyTable::rows;
  using KeyTable::size;
  std::vector<Row> Rows() const;
};

Row MakeRow(int intf, const LabelStack& stack);

}  // namespace softcard

#endif
