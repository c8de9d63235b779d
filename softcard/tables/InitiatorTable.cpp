#include "softcard/tables/InitiatorTable.h"

#include <algorithm>

#include "softcard/Limits.h"
#include "softcard/tables/Sorted.h"

namespace softcard {

const TableDescription InitiatorTable::kDescription = {"initiators",
                                                       "initiator",
                                                       Origin::kMadeByRequests,
                                                       {"intf", calls::Kind::kNumber},
                                                       {{"labels", calls::Kind::kLabels}}};

int InitiatorTable::Set(int intf, int num_labels, const bcm_mpls_egress_label_t* labels, const IntfTable& intfs) {
  if (num_labels < 0 || num_labels > kMaxLabels || (num_labels > 0 && !labels)) return BCM_E_PARAM;
  const LabelStack stack(labels, num_labels);
  const bool good = std::all_of(stack.begin(), stack.end(), [](const bcm_mpls_egress_label_t& label) {
    return label.label <= kLastLabel && label.exp <= kLastExp;
  });
  if (!good) return BCM_E_PARAM;
  if (!intfs.Find(intf)) return BCM_E_NOT_FOUND;
  return Write(intf, stack);
}

int InitiatorTable::Clear(int intf) { return Delete(intf) < 0 ? BCM_E_UNAVAIL : BCM_E_NONE; }

Row MakeRow(int intf, const LabelStack& stack) {
  return {&InitiatorTable::kDescription, calls::ToValue(intf), {std::vector(stack.begin(), stack.end())}};
}

std::vector<Row> InitiatorTable::Rows() const {
  std::vector<Row> result;
  for (const auto& [intf, stack] : Sorted(rows())) result.push_back(MakeRow(intf, stack));
  return result;
}

}  // namespace softcard
