#include "softcard/tables/PortTables.h"

#include <algorithm>

#include "softcard/tables/Sorted.h"

namespace softcard {

using calls::Kind;

const TableDescription AttachTable::kDescription = {
    "attachments", "attachment", Origin::kMadeByRequests, {"port", Kind::kText}, {{"destination", Kind::kNumber}}};
const TableDescription LagTable::kDescription = {
    "members", "members", Origin::kMadeByRequests, {"lag", Kind::kText}, {{"ports", Kind::kText}}};

int AttachTable::Set(int port, unsigned destination, const Ports& ports) {
  return ports.IsEthernet(port) ? Write(port, destination) : static_cast<int>(BCM_E_PORT);
}

std::vector<Row> AttachTable::Rows(const Ports& ports) const {
  std::vector<Row> result;
  for (const auto& [port, destination] : Sorted(rows())) result.push_back(AttachmentRow(port, destination, ports));
  return result;
}

Row AttachmentRow(int port, unsigned destination, const Ports& ports) {
  return {&AttachTable::kDescription, calls::ToValue(ports.Name(port)), {calls::ToValue(destination)}};
}

int LagTable::Set(int lag, const std::vector<int>& members, const Ports& ports) {
  const auto contains = [](const std::vector<int>& all, int port) {
    return std::find(all.begin(), all.end(), port) != all.end();
  };
  if (!ports.IsLag(lag)) return BCM_E_PORT;
  if (members.empty()) return BCM_E_PARAM;
  for (auto member = members.begin(); member != members.end(); ++member) {
    if (!ports.IsEthernet(*member)) return BCM_E_PORT;
    if (std::find(members.begin(), member, *member) != member) return BCM_E_PARAM;
    for (const auto& [other, others] : rows()) {
      if (other != lag && contains(others, *member)) return BCM_E_EXISTS;
    }
  }
  return Write(lag, members);
}

std::vector<Row> LagTable::Rows(const Ports& ports) const {
  std::vector<Row> result;
  for (const auto& [lag, members] : Sorted(rows())) result.push_back(MembersRow(lag, members, ports));
  return result;
}

Row MembersRow(int lag, const std::vector<int>& members, const Ports& ports) {
  std::string names;
  for (const int member : members) names += (names.empty() ? "" : ",") + ports.Name(member);
  return {&LagTable::kDescription, calls::ToValue(ports.Name(lag)), {calls::ToValue(names)}};
}

}  // namespace softcard
