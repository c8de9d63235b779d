#include "softcard/tables/LabelTable.h"

#include <string>

#include "bcm/error.h"
#include "softcard/Limits.h"

namespace softcard {

const TableDescription LabelTable::kDescription = {"labels",
                                                   "label",
                                                   Origin::kMadeByRequests,
                                                   {"label", calls::Kind::kNumber},
                                                   {{"action", calls::Kind::kText}, {"to", calls::Kind::kText}}};

int LabelTable::Set(unsigned label, LabelAction action, const Ports& ports) {
  if (label > kLastLabel || label == kImplicitNull || action.kind == LabelAction::Kind::kNone) return BCM_E_PARAM;
  if (action.kind == LabelAction::Kind::kPopPort && !ports.Exists(static_cast<int>(action.value))) return BCM_E_PORT;
  const bool is_new = Find(label).kind == LabelAction::Kind::kNone;
  if (is_new && count_ >= size_) return BCM_E_FULL;
  if (label >= rows_.size()) rows_.resize(label + 1);
  rows_[label] = action;
  if (is_new) ++count_;
  return BCM_E_NONE;
}

int LabelTable::Delete(unsigned label) {
  if (Find(label).kind == LabelAction::Kind::kNone) return BCM_E_NOT_FOUND;
  rows_[label] = {};
  --count_;
  return BCM_E_NONE;
}

std::vector<Row> LabelTable::Rows(const Ports& ports) const {
  std::vector<Row> rows;
  ForEach([&](unsigned label, const LabelAction& action) { rows.push_back(MakeRow(label, action, ports)); });
  return rows;
}

Row MakeRow(unsigned label, LabelAction action, const Ports& ports) {
  const char* const names[] = {"none", "destination", "pop-vrf", "pop-port"};
  const std::string to = action.kind == LabelAction::Kind::kPopPort ? ports.Name(static_cast<int>(action.value))
                                                                    : std::to_string(action.value);
  return {&LabelTable::kDescription,
          calls::ToValue(label),
          {calls::ToValue(names[static_cast<int>(action.kind)]), calls::ToValue(to)}};
}

}  // namespace softcard
