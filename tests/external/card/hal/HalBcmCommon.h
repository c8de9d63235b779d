#pragma once

#include <map>
#include <string>

#include "DestinationIdCorrelator.h"
#include "hal/limid.h"

struct LimIdLess {
  bool operator()(limid_t const& a, limid_t const& b) const noexcept { return a.raw < b.raw; }
};

struct HalBcmCommon {
  int unit;
  std::map<limid_t, int, LimIdLess> port_table;
  std::map<limid_t, int, LimIdLess> lag_table;
  std::map<int, DestinationIdCorrelator&> destination_id_correlators;
  std::string chip_name;

  static HalBcmCommon* GetInstance();
  int GetMplsExpMapId() const;
};
