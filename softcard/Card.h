#ifndef SOFTCARD_CARD_H
#define SOFTCARD_CARD_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hal/HalBcmCommon.h"
#include "hal/limid.h"
#include "softcard/CallLog.h"
#include "softcard/CardDescription.h"
#include "softcard/FaultPlan.h"
#include "softcard/Tables.h"

namespace softcard {

/// The software line card that this process runs on: everything the platform's functions act on.
class Card {
 public:
  static Card& Get();

  /// An empty card of this description: tables, call log and fault plan are emptied, the port tables filled, the
  /// records of installed destinations freed. Singletons and managers that were handed out stay valid.
  void Reset(const CardDescription& description = {});

  const CardDescription& description() const { return description_; }
  CallLog& log() { return log_; }
  FaultPlan& faults() { return faults_; }
  Tables& tables() { return *tables_; }
  const Tables& tables() const { return *tables_; }
  /// What `HalBcmCommon::GetInstance()` gives, without the call being seen.
  HalBcmCommon& common() { return common_; }
  const HalBcmCommon& common() const { return common_; }

  /// The lim id of "eth1", "lag2", "cpu" or "vlan100"; word 0, which is of no kind, for any other name. Ports need not
  /// exist: "eth99" is an Ethernet lim id that no table of a 48-port card holds.
  static limid_t LimId(std::string_view name);

  /// The tables' names in the order in which they are shown: "intfs", "egresses", "initiators", "stations",
  /// "associations", "vrfs", "protocol", "switch", "ports", "lags", "destinations".
  static const std::vector<std::string>& TableNames();
  /// A table's rows in the order of their ids, a line each, for example
  /// "intf 1: vrf=1 vlan=100 mac=00:00:5e:00:01:01 mtu=1500 flags=0x0 tunnel=none". Throws std::invalid_argument
  /// for a name that is no table's.
  std::vector<std::string> Rows(std::string_view table) const;

 private:
  Card() { Reset(); }

  CardDescription description_;
  CallLog log_;
  FaultPlan faults_;
  std::optional<Tables> tables_;
  HalBcmCommon common_;
};

}  // namespace softcard

#endif
