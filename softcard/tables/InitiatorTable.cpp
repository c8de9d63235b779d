#include "softcard/tables/InitiatorTable.h"

#include <algorithm>

#include "calls/Text.h"
#include "softcard/Limits.h"

namespace softcard {

int InitiatorTable::Set(int intf, int num_labels, const bcm_mpls_egress_label_t* labels) {
  if (num_labels < 0 || num_labels > kMaxLabels || (num_labels > 0 && !labels)) return BCM_E_PARAM;
  const LabelStack stack(labels, labels + num_labels);
  const bool good = std::all_of(stack.begin(), stack.end(), [](const bcm_mpls_egress_label_t& label) {
    return label.label <= kLastLabel && label.exp <= kLastExp;
  });
  if (!good) return BCM_E_PARAM;
  if (!intfs_.Find(intf)) return BCM_E_NOT_FOUND;
  return Write(intf, stack);
}

int InitiatorTable::Clear(int intf) { return Delete(intf) < 0 ? BCM_E_UNAVAIL : BCM_E_NONE; }

std::vector<std::string> InitiatorTable::Rows() const {
  std::vector<std::string> lines;
  for (const auto& [intf, stack] : rows()) lines.push_back(InitiatorText(intf, stack));
  return lines;
}

std::string InitiatorText(int intf, const LabelStack& stack) {
  const LabelRecords records{stack.data(), static_cast<int>(stack.size())};
  return "initiator " + Text(intf) + ": " + Fields(" ", "labels", records);
}

}  // namespace softcard
