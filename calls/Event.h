#ifndef CALLS_EVENT_H
#define CALLS_EVENT_H

#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "calls/Functions.h"
#include "calls/Value.h"

namespace calls {

/// A call of a platform function.
struct Call {
  const Function* function;      ///< never null; lives as long as the process
  std::vector<Value> arguments;  ///< as the function's description has them
  Value result{};                ///< std::monostate for results without a text
  bool injected = false;         ///< the result was planned, the platform had no part in it
  Value output{};                ///< what came back through a pointer; std::monostate when nobody looked
  std::string thrown{};          ///< "std::bad_alloc: std::bad_alloc"; empty for a call that returned
};

/// A line of the card's log.
struct LogLine {
  int level;
  std::string text;
};

/// What is seen at the border between the module and the platform.
using Event = std::variant<Call, LogLine>;

/// One line, the same on the terminal, in an expectation, in a recording and in a failed test:
///
///     IntfManager::CreateIntf(unit=0, vrf=1, vlan=100, mac=00:00:5e:00:01:01, mtu=1500, flags=0x0) = 1
///     IntfManager::CreateIntf(unit=0, vrf=1, vlan=100, mac=null, mtu=1500, flags=0x0) = -4 (Invalid parameter)
///     EgressManager::DeleteEgress(egress=100001) = -11 (Operation failed) [injected]
///     limid_to_ifindex(limid=0x5000001) = 0 -> ifindex=1
///     log 7: Installing outgoing encapsulation for VLAN destination id(10)
std::string Text(const Event& event, const LimIdNames& names = kLimIdWords);
/// The line without its mark, for whoever does not care where a result came from.
std::string_view Unmarked(std::string_view line);
std::string UnmarkedText(const Event& event, const LimIdNames& names = kLimIdWords);
/// A JSON object: {"call": "EgressManager::DeleteEgress", "arguments": {"egress": 100001}, "result": -11,
/// "status": "Operation failed", "injected": true}, or {"log": 7, "text": "..."}.
std::string Json(const Event& event, const LimIdNames& names = kLimIdWords);
/// The event that a line tells; nothing for a line that tells none.
std::optional<Event> ReadEvent(std::string_view line, const LimIdNames& names = kLimIdWords);

/// Whether a call says that it was refused: a negative status, id or number, or a lookup that found nothing.
bool IsRefused(const Event& event);

/// "std::out_of_range: HAL ID not found".
std::string Describe(const std::exception& exception);

}  // namespace calls

#endif
