#include "calls/Text.h"

#include <algorithm>
#include <charconv>

#include "bcm/error.h"
#include "softcard/LimId.h"
#include "softcard/Limits.h"

namespace softcard {
namespace {

std::string Hexadecimal(unsigned value, size_t min_digits) {
  char digits[8];
  const std::string text(digits, std::to_chars(digits, digits + sizeof digits, value, 16).ptr);
  return text.size() < min_digits ? std::string(min_digits - text.size(), '0') + text : text;
}

}  // namespace

std::string Text(Hex value) { return "0x" + Hexadecimal(value.value, 1); }

std::string Text(Label label) { return label.value == kNoLabel ? "none" : Text(label.value); }

std::string Text(const unsigned char* mac) {
  if (!mac) return "null";
  std::string text = Hexadecimal(mac[0], 2);
  for (int i = 1; i < 6; ++i) text += ':' + Hexadecimal(mac[i], 2);
  return text;
}

std::string Text(const MacAddress& mac) { return Text(mac.data()); }

std::string Text(limid_t limid) {
  const std::string index = Text(LimIdIndex(limid));
  switch (LimIdType(limid)) {
    case limid_type_ethernet: return "eth" + index;
    case limid_type_lag: return "lag" + index;
    case limid_type_l3_vlan: return "vlan" + index;
    case limid_type_cpuport: return "cpu";
    default: return Text(Hex{limid.word});
  }
}

std::string Text(limid_type_t type) {
  switch (type) {
    case limid_type_ethernet: return "ethernet";
    case limid_type_lag: return "lag";
    case limid_type_cpuport: return "cpuport";
    case limid_type_l3_vlan: return "l3_vlan";
    default: return "unknown";
  }
}

std::string Text(bcm_switch_control_t type) {
  switch (type) {
    case bcmSwitchL3EgressMode: return "bcmSwitchL3EgressMode";
    case bcmSwitchL3IngressMode: return "bcmSwitchL3IngressMode";
    default: return Text(static_cast<int>(type));
  }
}

std::string Text(TunnelObject::EnumTunnelType type) {
  switch (type) {
    case TunnelObject::kTunnelTypeNone: return "none";
    case TunnelObject::kTunnelTypeMpls: return "mpls";
    default: return Text(static_cast<int>(type));
  }
}

std::string Text(const bcm_mpls_egress_label_t& label) {
  return '{' +
         Fields(", ", "flags", Hex{label.flags}, "label", Label{label.label}, "qos_map", label.qos_map_id, "exp",
                label.exp, "ttl", label.ttl) +
         '}';
}

std::string Text(const LabelRecords& labels) {
  if (!labels.records && labels.count > 0) return "null";
  std::string text = "[";
  for (int i = 0; i < std::min(labels.count, kMaxLabels); ++i) {
    if (i > 0) text += ", ";
    text += Text(labels.records[i]);
  }
  return text + ']';
}

std::string StatusText(int rv) {
  if (rv >= 0) return Text(rv);
  return Text(rv) + " (" + _shr_errmsg[rv >= BCM_E_PORT ? -rv : 19] + ')';
}

}  // namespace softcard
