#include "scenario/Holdings.h"

#include <map>

#include "softcard/Card.h"

namespace scenario {
namespace {

/// The rows of some tables by what stands before their colon: "intf 1", "egress 100001".
std::map<std::string, std::string> RowsByName(const std::vector<std::string>& tables) {
  std::map<std::string, std::string> rows;
  for (const std::string& table : tables) {
    for (const std::string& row : softcard::Texts(softcard::Card::Get().Rows(table)))
      rows.emplace(row.substr(0, row.find(':')), row);
  }
  return rows;
}

/// The 7 of "intf=7" in a row.
std::string Field(const std::string& row, const std::string& key) {
  const std::size_t begin = row.find(' ' + key + '=');
  if (begin == std::string::npos) return "";
  const std::size_t value = begin + key.size() + 2;
  return row.substr(value, row.find(' ', value) - value);
}

}  // namespace

std::vector<Holding> Holdings() {
  const auto rows = RowsByName({"intfs", "egresses", "initiators", "stations", "associations", "protocol"});
  std::vector<Holding> holdings;
  for (const std::string& destination : softcard::Texts(softcard::Card::Get().Rows("destinations"))) {
    Holding holding{destination, {}};
    const auto add = [&](const std::string& name) {
      const auto row = rows.find(name);
      if (row != rows.end()) holding.rows.push_back(row->second);
    };
    const std::string intf = "intf " + Field(destination, "intf");
    const std::string initiator = "initiator " + Field(destination, "intf");
    const std::string egress = Field(destination, "egress");
    // A VLAN encapsulation holds no egress object; hosts, and tunnels without an initiator, borrow their interface.
    const bool vlan = egress == "0";
    if (vlan || rows.count(initiator) != 0) add(intf);
    add(initiator);
    add("egress " + egress);
    if (vlan && rows.count(intf) != 0) {
      const std::string vlan_id = Field(rows.at(intf), "vlan");
      for (const char* table : {"station ", "association ", "protocol "}) add(table + vlan_id);
    }
    holdings.push_back(std::move(holding));
  }
  return holdings;
}

}  // namespace scenario
