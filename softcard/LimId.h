#ifndef SOFTCARD_LIM_ID_H
#define SOFTCARD_LIM_ID_H

#include <optional>
#include <string>
#include <string_view>

#include "calls/Value.h"
#include "hal/limid.h"

/// What the card puts into a lim id's word: the type in the top eight bits, the index in the low 24.
namespace softcard {

constexpr unsigned kMaxLimIdIndex = 0xFFFFFF;

constexpr limid_t MakeLimId(limid_type_t type, unsigned index) {
  return {static_cast<uint32_t>(type) << 24 | (index & kMaxLimIdIndex)};
}
constexpr unsigned LimIdType(limid_t limid) { return limid.word >> 24; }
constexpr unsigned LimIdIndex(limid_t limid) { return limid.word & kMaxLimIdIndex; }

/// The lim id of "eth1", "lag2", "cpu" or "vlan100". Ports need not exist: "eth99" is an Ethernet lim id that no table
/// of a 48-port card holds. Throws std::invalid_argument for any other name.
limid_t LimId(std::string_view name);
/// The same; nothing for any other name, but the lim id with this word for "0x5000001".
std::optional<limid_t> ReadLimId(std::string_view name);
/// "eth1", "lag2", "cpu", "vlan100"; the word for a type that the card does not know: "0xab00002a".
std::string LimIdName(limid_t limid);

extern const calls::LimIdNames kLimIdNames;

}  // namespace softcard

#endif
