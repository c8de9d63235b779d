#include "softcard/LimId.h"

#include <charconv>

#include "softcard/Card.h"

namespace softcard {

limid_t Card::LimId(std::string_view name) {
  constexpr struct {
    std::string_view prefix;
    limid_type_t type;
  } kinds[] = {{"eth", limid_type_ethernet}, {"lag", limid_type_lag}, {"vlan", limid_type_l3_vlan}};
  if (name == "cpu") return MakeLimId(limid_type_cpuport, 0);
  for (const auto& kind : kinds) {
    if (name.substr(0, kind.prefix.size()) != kind.prefix) continue;
    const std::string_view digits = name.substr(kind.prefix.size());
    unsigned index = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), index);
    if (error == std::errc() && end == digits.data() + digits.size() && index <= kMaxLimIdIndex)
      return MakeLimId(kind.type, index);
  }
  return {0};
}

}  // namespace softcard
