#include "softcard/tables/ChipControls.h"

#include "calls/Text.h"

namespace softcard {

std::vector<std::string> ProtocolControl::Rows() const {
  std::vector<std::string> lines;
  for (const auto& row : rows()) lines.push_back("protocol " + Text(row.first) + ": on");
  return lines;
}

int SwitchControls::Set(bcm_switch_control_t control, int mode) {
  if (control != bcmSwitchL3EgressMode && control != bcmSwitchL3IngressMode) return BCM_E_UNAVAIL;
  return mode == 0 || mode == 1 ? Write(control, mode) : static_cast<int>(BCM_E_PARAM);
}

std::vector<std::string> SwitchControls::Rows() const {
  std::vector<std::string> lines;
  for (const auto& [control, mode] : rows()) lines.push_back("switch " + Text(control) + ": " + Text(mode));
  return lines;
}

}  // namespace softcard
