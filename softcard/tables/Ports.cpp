#include "softcard/tables/Ports.h"

#include <algorithm>

#include "calls/Text.h"
#include "softcard/LimId.h"

namespace softcard {

Ports::Ports(const CardDescription& description)
    : front_ports_(static_cast<int>(description.front_ports)),
      lags_(static_cast<int>(description.lags)),
      lag_base_(std::max(1000, front_ports_)) {}

limid_t Ports::limid(int port) const {
  if (port == 0) return MakeLimId(limid_type_cpuport, 0);
  if (port > 0 && port <= front_ports_) return MakeLimId(limid_type_ethernet, static_cast<unsigned>(port));
  if (port > lag_base_ && port <= lag_base_ + lags_)
    return MakeLimId(limid_type_lag, static_cast<unsigned>(port - lag_base_));
  return {0};
}

std::string Ports::Name(int port) const { return Exists(port) ? Text(limid(port)) : Text(port); }

void Ports::Fill(HalBcmCommon* common) const {
  common->port_table.clear();
  common->lag_table.clear();
  for (int port = 0; port <= front_ports_; ++port) common->port_table.emplace(limid(port), port);
  for (int port = lag_base_ + 1; port <= lag_base_ + lags_; ++port) common->lag_table.emplace(limid(port), port);
}

std::vector<std::string> Ports::PortRows() const {
  std::vector<std::string> lines;
  for (int port = 0; port <= front_ports_; ++port) lines.push_back("port " + Text(port) + ": " + Name(port));
  return lines;
}

std::vector<std::string> Ports::LagRows() const {
  std::vector<std::string> lines;
  for (int port = lag_base_ + 1; port <= lag_base_ + lags_; ++port)
    lines.push_back("lag " + Text(port) + ": " + Name(port));
  return lines;
}

}  // namespace softcard
