#ifndef SCENARIO_RECORD_H
#define SCENARIO_RECORD_H

#include <string>
#include <vector>

namespace scenario {

/// A line of what happened during a request or to a packet.
struct TraceLine {
  enum class Kind { kCall, kAccess, kLog, kClient, kPacket };

  Kind kind;
  std::string text;
  unsigned depth = 0;  ///< in how many clients' callbacks
};

/// How a request ended.
struct Outcome {
  enum class Kind { kNone, kNumber, kThrew };

  Kind kind = Kind::kNone;
  int number = 0;
  std::string thrown;  ///< "std::out_of_range: HAL ID not found"

  /// "0", "threw std::out_of_range: HAL ID not found"
  std::string Text() const;
};

/// What an update client was told.
struct Notification {
  std::string client;
  int destination;
  int port;

  std::string Text() const;
};

/// Everything about a request that expectations can ask.
struct Record {
  std::vector<TraceLine> trace;
  std::vector<Notification> notifications;
  Outcome outcome;
};

}  // namespace scenario

#endif
