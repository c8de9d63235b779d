#ifndef CALLS_VALUE_H
#define CALLS_VALUE_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "bcm/mpls.h"
#include "bcm/switch.h"
#include "hal/IntfObject.h"
#include "hal/TunnelObject.h"
#include "hal/limid.h"

/// What is given to a platform function, comes back from it, or stands in a table: a value that owns its data, and a
/// kind that says how it reads.
namespace calls {

enum class Kind {
  kNumber,         ///< "1500", "-1"
  kHex,            ///< "0x11"
  kBool,           ///< "true"
  kStatus,         ///< "1", "-4 (Invalid parameter)"
  kMac,            ///< "00:00:5e:00:01:01", "null"
  kLabel,          ///< "100", "none" for 0xFFFFFFFF
  kLabels,         ///< "[{flags=0x11, label=100, qos_map=1, exp=0, ttl=255}]", innermost first; "null"
  kLimId,          ///< "eth1", as LimIdNames say
  kLimIdType,      ///< "ethernet", "lag", "cpuport", "l3_vlan", "unknown"
  kSwitchControl,  ///< "bcmSwitchL3EgressMode"
  kTunnelType,     ///< "none", "mpls"
  kText,           ///< as it stands
};

using Labels = std::vector<bcm_mpls_egress_label_t>;

/// std::monostate: nothing, or a null pointer. Numbers of every width and sign, truth values, lim ids (their word) and
/// enumerations are std::int64_t.
using Value = std::variant<std::monostate, std::int64_t, MacAddress, Labels, std::string>;

/// The labels of a call that says how many there are. A tunnel initiator has two at most: more are never read.
struct LabelArray {
  const bcm_mpls_egress_label_t* labels;  ///< may be null
  int count;
};

/// Values of what the platform's functions take and give.
inline Value ToValue(int value) { return std::int64_t{value}; }
inline Value ToValue(unsigned value) { return std::int64_t{value}; }
inline Value ToValue(unsigned long value) { return static_cast<std::int64_t>(value); }
inline Value ToValue(limid_t limid) { return std::int64_t{limid.word}; }
inline Value ToValue(MacAddress mac) { return mac; }
inline Value ToValue(const unsigned char* mac) {
  return mac ? Value(MacAddress{mac[0], mac[1], mac[2], mac[3], mac[4], mac[5]}) : Value();
}
inline Value ToValue(std::string text) { return text; }
inline Value ToValue(const char* text) { return std::string(text); }
Value ToValue(const LabelArray& labels);

/// How lim ids are written and read: only the room that knows their encoding can tell.
struct LimIdNames {
  std::string (*text)(limid_t limid);
  std::optional<limid_t> (*read)(std::string_view text);
};
/// In front of a platform whose encoding is not known: the word, "0x5000001".
extern const LimIdNames kLimIdWords;

std::string Text(Kind kind, const Value& value, const LimIdNames& names = kLimIdWords);
/// A JSON value: numbers and truth values as such, what is null or "none" as null, labels as objects, the rest as
/// strings.
std::string Json(Kind kind, const Value& value, const LimIdNames& names = kLimIdWords);
/// The value at the beginning of `*text`, which loses it; nothing when there is none of this kind. A text takes all.
std::optional<Value> Read(Kind kind, std::string_view* text, const LimIdNames& names = kLimIdWords);

/// "Invalid parameter" for -4, also for other negative results; the SDK's own words.
const char* StatusWords(std::int64_t status);

}  // namespace calls

#endif
