#ifndef SCENARIO_TRACE_H
#define SCENARIO_TRACE_H

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "calls/Event.h"
#include "softcard/packets/Way.h"
#include "softcard/tables/Row.h"

namespace scenario {

/// What an update client is told, does and gets, in words.
struct ClientNote {
  std::string text;
};

/// What was found or done on a packet's way, in words.
struct PacketNote {
  std::string text;
  bool is_frame = false;  ///< in the end, the bytes that left
};

/// Something that happened during a request or to a packet.
struct TraceLine {
  enum class Kind { kCall, kAccess, kLog, kClient, kPacket, kFrame };

  std::variant<calls::Event, ClientNote, PacketNote> what;
  unsigned depth = 0;  ///< in how many clients' callbacks

  Kind kind() const;
  /// With the card's names for lim ids, and a mark behind an injected result.
  std::string Text() const;
};

/// What an update client was told.
struct Notification {
  std::string client;
  int destination;
  int port;

  std::string Text() const;
};

/// How a request ended.
struct RequestResult {
  enum class Kind { kNone, kNumber, kThrew };

  Kind kind = Kind::kNone;
  int number = 0;
  std::string thrown;  ///< "std::out_of_range: HAL ID not found"

  /// "0", "threw std::out_of_range: HAL ID not found"
  std::string Text() const;
};

/// What came, and what became of it.
struct Forwarded {
  std::uint64_t time = 0;  ///< when it came, in nanoseconds since the run began
  std::string in_port{};   ///< "eth1"; empty for a packet that was routed elsewhere
  softcard::Bytes in{};
  softcard::Way way{};
  std::string out_port{};  ///< "eth3", "cpu"; empty when it was dropped
  softcard::Bytes out{};
};

/// A row that a statement put on the card by itself, or took from it.
struct OwnRow {
  softcard::Row row;  ///< of one that it took the key alone counts, of a route the VRF, too
  bool is_there;
};

/// Everything about a request or a packet that expectations can ask.
struct Trace {
  std::vector<TraceLine> lines;
  std::vector<Notification> notifications;
  RequestResult result;
  bool clients_went_on = false;       ///< they made more requests than they may
  std::optional<Forwarded> packet{};  ///< of a packet
  std::optional<OwnRow> own_row{};    ///< of a statement that fills a table without the module
};

/// The calls that were refused: "IntfManager::DeleteIntf = -11 (Operation failed), ...".
std::string RefusedCalls(const Trace& trace);

}  // namespace scenario

#endif
