#ifndef HAL_BCM_COMMON_H
#define HAL_BCM_COMMON_H

#include <map>

#include "DestinationIdCorrelator.h"
#include "hal/limid.h"

#pragma GCC visibility push(default)

/// Orders lim ids by the word's four bytes as unsigned bytes, most significant first.
struct LimIdLess {
  bool operator()(const limid_t& left, const limid_t& right) const;
};

/// What the modules of the card share about the chip.
class HalBcmCommon {
 public:
  /// The chip's unit number, the first argument of every SDK call.
  int unit = 0;
  /// Chip ports (gports) of the Ethernet ports and the CPU port.
  std::map<limid_t, int, LimIdLess> port_table;
  /// Chip ports (gports) of the LAGs.
  std::map<limid_t, int, LimIdLess> lag_table;
  /// The records of the installed destinations by destination id. Holds references; the encapsulation module
  /// allocates and frees the records.
  std::map<int, DestinationIdCorrelator&> destination_id_correlators;

  /// Never null; owned by the platform, outlives the modules.
  static HalBcmCommon* GetInstance();

  /// The QoS map that remarks the EXP bits of pushed labels.
  int GetMplsExpMapId();
};

#pragma GCC visibility pop

#endif
