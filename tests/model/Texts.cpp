#include "tests/model/Texts.h"

#include <cstdio>
#include <stdexcept>

#include "bcm/error.h"
#include "tests/model/Request.h"

namespace model {
namespace {

std::string Printed(const char* format, unsigned value) {
  char text[32];
  static_cast<void>(std::snprintf(text, sizeof text, format, value));
  return text;
}

std::string CapabilityText(int capability) {
  static const char* const names[] = {"None", "Protection", "Swap", "Forward", "Push", "VCLabel"};
  return std::string("MPLS Capability(") + (capability < 0 || capability > 5 ? "Unknown" : names[capability]) + ')';
}

}  // namespace

std::string ValueText(const std::string& kind, int value) {
  const auto word = static_cast<unsigned>(value);
  if (kind == "number") return std::to_string(value);
  if (kind == "destination") return Printed("destination id(%u)", word);
  if (kind == "vlan-id") return Printed("vlan id(%u)", word);
  if (kind == "intf-id") return Printed("intf id(%u)", word);
  if (kind == "capability") return CapabilityText(value);
  if (kind == "tunnel-type") return value == 1 ? "mpls" : "none";
  if (kind == "error") return _shr_errmsg[value >= -18 && value <= 0 ? -value : 19];
  throw std::logic_error("rules: no such kind of text: " + kind);
}

std::string LimidText(const std::string& name, int64_t type, int64_t index) {
  return "lim id(name=" + name + ", type=" + Printed("0x%02X", static_cast<unsigned>(type)) +
         ", value=" + Printed("0x%06X", static_cast<unsigned>(index) & 0xFFFFFF) + ')';
}

std::string ArgumentText(char kind, int64_t value) {
  const auto word = static_cast<unsigned>(value);
  switch (kind) {
    case 'u': return std::to_string(word);
    case 'h': return std::to_string(word & 0xFFFF);
    case 'x': return Printed("0x%x", word);
    case 'm': return MacText(value);
    case 'n': return word == 0xFFFFFFFF ? "none" : std::to_string(word);
    case 'b': return value != 0 ? "true" : "false";
    case 't': return value == 2 ? "lag" : "cpuport";
    case 's': return value == 230 ? "bcmSwitchL3EgressMode" : "bcmSwitchL3IngressMode";
    default: return std::to_string(static_cast<int>(value));
  }
}

}  // namespace model
