#ifndef CALLS_TEXT_H
#define CALLS_TEXT_H

#include <string>
#include <string_view>
#include <tuple>

#include "bcm/mpls.h"
#include "bcm/switch.h"
#include "hal/IntfObject.h"
#include "hal/TunnelObject.h"
#include "hal/limid.h"

/// How the software card prints what it is given and what it holds: one printer per type.
namespace softcard {

/// What kind of number an `unsigned` is, for those that are not printed as such.
struct Hex {
  unsigned value;
};
struct Label {
  unsigned value;  ///< 0xFFFFFFFF prints as "none"
};
/// The first `count` records of an array, of which a tunnel initiator has two at most.
struct LabelRecords {
  const bcm_mpls_egress_label_t* records;
  int count;
};

inline std::string Text(int value) { return std::to_string(value); }
inline std::string Text(unsigned value) { return std::to_string(value); }
inline std::string Text(unsigned long value) { return std::to_string(value); }
inline std::string Text(bool value) { return value ? "true" : "false"; }
inline std::string Text(const char* text) { return text; }
inline std::string Text(const std::string& text) { return text; }
std::string Text(Hex value);                 ///< "0x11"
std::string Text(Label label);               ///< "100", "none"
std::string Text(const unsigned char* mac);  ///< "00:00:5e:00:01:01", "null"
std::string Text(const MacAddress& mac);
std::string Text(limid_t limid);                      ///< "eth1", "lag2", "cpu", "vlan100", else the word: "0xab00002a"
std::string Text(limid_type_t type);                  ///< "ethernet", "lag", "cpuport", "l3_vlan", "unknown"
std::string Text(bcm_switch_control_t type);          ///< "bcmSwitchL3EgressMode", else the number
std::string Text(TunnelObject::EnumTunnelType type);  ///< "none", "mpls", else the number
std::string Text(const bcm_mpls_egress_label_t& label);
std::string Text(const LabelRecords& labels);  ///< "[{flags=0x11, label=100, ...}, ...]", "null"

/// "3", "-4 (Invalid parameter)".
std::string StatusText(int rv);

/// "unit=0, vrf=1" of (", ", "unit", 0, "vrf", 1).
inline std::string Fields(const char*) { return {}; }
template <typename Value, typename... Rest>
std::string Fields(const char* separator, const char* name, const Value& value, const Rest&... rest) {
  std::string text = std::string(name) + '=' + Text(value);
  if constexpr (sizeof...(rest) > 0) text += separator + Fields(separator, rest...);
  return text;
}

}  // namespace softcard

#endif
