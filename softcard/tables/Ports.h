#ifndef SOFTCARD_TABLES_PORTS_H
#define SOFTCARD_TABLES_PORTS_H

#include <string>
#include <vector>

#include "hal/HalBcmCommon.h"
#include "softcard/CardDescription.h"
#include "softcard/tables/Row.h"

namespace softcard {

/// The chip's ports: 0 is the CPU port, 1 ... N the Ethernet ports, 1001 ... the LAGs (behind the last Ethernet port
/// on a card with more than 1000).
class Ports {
 public:
  static const TableDescription kPortDescription;
  static const TableDescription kLagDescription;

  explicit Ports(const CardDescription& description);

  bool Exists(int port) const { return port == 0 || IsEthernet(port) || IsLag(port); }
  bool IsEthernet(int port) const { return port > 0 && port <= front_ports_; }
  bool IsLag(int port) const { return port > lag_base_ && port <= lag_base_ + lags_; }
  /// "eth3", "lag2", "cpu"; the number of a port that does not exist.
  std::string Name(int port) const;

  /// Writes the tables in which the modules of the card look ports up.
  void Fill(HalBcmCommon* common) const;

  /// The CPU port and the Ethernet ports.
  std::size_t port_count() const { return static_cast<std::size_t>(front_ports_) + 1; }
  std::size_t lag_count() const { return static_cast<std::size_t>(lags_); }
  std::vector<Row> PortRows() const;
  std::vector<Row> LagRows() const;

 private:
  /// Word 0 for a port that does not exist.
  limid_t limid(int port) const;

  int front_ports_;
  int lags_;
  int lag_base_;
};

}  // namespace softcard

#endif
