#include <map>
#include <stdexcept>

#include "HalL3MplsEncapsulationBcm.h"
#include "LogText.h"
#include "bcm/error.h"
#include "hal/HalCallbacksItf.h"

namespace {

int FindPort(const std::map<limid_t, int, LimIdLess>& table, const limid_t& limid) {
  const auto found = table.find(limid);
  if (found == table.end()) throw std::out_of_range("HAL ID not found");
  return found->second;
}

}  // namespace

int HalL3MplsEncapsulationBcm::GetPort(const limid_t& limid) const {
  HalCallbacksItf::getInstance()->log(kProgress, "Converting %s to port", LimIdText(limid).c_str());
  if (limid_is_from_type(limid, limid_type_cpuport) != 0 || limid_is_from_type_ethernet(limid) != 0) {
    return FindPort(hal_bcm_common_->port_table, limid);
  }
  if (limid_is_from_type(limid, limid_type_lag) != 0) return FindPort(hal_bcm_common_->lag_table, limid);
  HalCallbacksItf::getInstance()->log(kProgress, "Invalid Lim ID. Returning invalid gport");
  return BCM_E_PORT;
}
