#include "softcard/CallLog.h"

#include <utility>

namespace softcard {

bool CallLog::Records(EventKind kind) const {
  return recording_ == Recording::kAll || (recording_ == Recording::kCalls && kind != EventKind::kAccess);
}

void CallLog::Add(EventKind kind, std::string text) {
  if (Records(kind)) events_.push_back({kind, std::move(text)});
}

std::vector<std::string> CallLog::Lines() const {
  std::vector<std::string> lines;
  lines.reserve(events_.size());
  for (const Event& event : events_) lines.push_back(event.text);
  return lines;
}

}  // namespace softcard
