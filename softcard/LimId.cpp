#include "softcard/LimId.h"

#include <charconv>
#include <stdexcept>

namespace softcard {
namespace {

constexpr struct {
  std::string_view prefix;
  limid_type_t type;
} kKinds[] = {{"eth", limid_type_ethernet}, {"lag", limid_type_lag}, {"vlan", limid_type_l3_vlan}};

std::optional<limid_t> NamedLimId(std::string_view name) {
  if (name == "cpu") return MakeLimId(limid_type_cpuport, 0);
  for (const auto& kind : kKinds) {
    if (name.substr(0, kind.prefix.size()) != kind.prefix) continue;
    const std::string_view digits = name.substr(kind.prefix.size());
    const char* const end = digits.data() + digits.size();
    unsigned index = 0;
    const auto [stop, error] = std::from_chars(digits.data(), end, index);
    if (error == std::errc() && stop == end && index <= kMaxLimIdIndex) return MakeLimId(kind.type, index);
  }
  return std::nullopt;
}

}  // namespace

const calls::LimIdNames kLimIdNames = {LimIdName, ReadLimId};

limid_t LimId(std::string_view name) {
  if (const auto limid = NamedLimId(name)) return *limid;
  throw std::invalid_argument("\"" + std::string(name) +
                              "\" is no lim id; lim ids are eth1, lag1, vlan1, cpu and the like");
}

std::optional<limid_t> ReadLimId(std::string_view name) {
  const auto limid = NamedLimId(name);
  return limid ? limid : calls::kLimIdWords.read(name);
}

std::string LimIdName(limid_t limid) {
  const unsigned type = LimIdType(limid);
  if (type == limid_type_cpuport) return "cpu";
  for (const auto& kind : kKinds) {
    if (type == static_cast<unsigned>(kind.type)) return std::string(kind.prefix) + std::to_string(LimIdIndex(limid));
  }
  return calls::kLimIdWords.text(limid);
}

}  // namespace softcard
