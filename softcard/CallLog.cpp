#include "softcard/CallLog.h"

#include <utility>

#include "softcard/LimId.h"

namespace softcard {

std::vector<calls::Event> CallLog::Take() { return std::exchange(events_, {}); }

std::vector<std::string> CallLog::Lines() const {
  std::vector<std::string> lines;
  lines.reserve(events_.size());
  for (const calls::Event& event : events_) lines.push_back(calls::UnmarkedText(event, kLimIdNames));
  return lines;
}

}  // namespace softcard
