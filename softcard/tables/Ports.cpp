#include "softcard/tables/Ports.h"

#include <algorithm>

#include "softcard/LimId.h"

namespace softcard {

const TableDescription Ports::kPortDescription = {
    "ports", "port", Origin::kGiven, {"port", calls::Kind::kNumber}, {{"name", calls::Kind::kText}}};
const TableDescription Ports::kLagDescription = {
    "lags", "lag", Origin::kGiven, {"port", calls::Kind::kNumber}, {{"name", calls::Kind::kText}}};

Ports::Ports(const CardDescription& description)
    : front_ports_(static_cast<int>(description.front_ports)),
      lags_(static_cast<int>(description.lags)),
      lag_base_(std::max(1000, front_ports_)) {}

limid_t Ports::limid(int port) const {
  if (port == 0) return MakeLimId(limid_type_cpuport, 0);
  if (IsEthernet(port)) return MakeLimId(limid_type_ethernet, static_cast<unsigned>(port));
  if (IsLag(port)) return MakeLimId(limid_type_lag, static_cast<unsigned>(port - lag_base_));
  return {0};
}

std::string Ports::Name(int port) const { return Exists(port) ? LimIdName(limid(port)) : std::to_string(port); }

void Ports::Fill(HalBcmCommon* common) const {
  common->port_table.clear();
  common->lag_table.clear();
  for (int port = 0; port <= front_ports_; ++port) common->port_table.emplace(limid(port), port);
  for (int port = lag_base_ + 1; port <= lag_base_ + lags_; ++port) common->lag_table.emplace(limid(port), port);
}

std::vector<Row> Ports::PortRows() const {
  std::vector<Row> rows;
  for (int port = 0; port <= front_ports_; ++port) {
    rows.push_back({&kPortDescription, calls::ToValue(port), {calls::ToValue(Name(port))}});
  }
  return rows;
}

std::vector<Row> Ports::LagRows() const {
  std::vector<Row> rows;
  for (int port = lag_base_ + 1; port <= lag_base_ + lags_; ++port) {
    rows.push_back({&kLagDescription, calls::ToValue(port), {calls::ToValue(Name(port))}});
  }
  return rows;
}

}  // namespace softcard
