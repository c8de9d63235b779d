#ifndef SOFTCARD_CALL_LOG_H
#define SOFTCARD_CALL_LOG_H

#include <string>
#include <vector>

#include "calls/Event.h"

namespace softcard {

/// Every platform call with its arguments and its result, and every log line, in order.
class CallLog {
 public:
  enum class Recording {
    kNothing,  ///< for long runs
    kCalls,    ///< calls and log lines, the default
    kAll,      ///< accesses too
  };

  Recording recording() const { return recording_; }
  bool Records(calls::Purpose purpose) const {
    return recording_ == Recording::kAll || (recording_ == Recording::kCalls && purpose == calls::Purpose::kCall);
  }
  bool RecordsLogLines() const { return recording_ != Recording::kNothing; }
  void Add(calls::Event event) { events_.push_back(std::move(event)); }

  const std::vector<calls::Event>& events() const { return events_; }
  /// Hands the events out and is empty afterwards.
  std::vector<calls::Event> Take();
  /// The events' texts, with the card's names for lim ids and without marks: what the module saw.
  std::vector<std::string> Lines() const;
  void Clear() { events_.clear(); }

 private:
  friend class Record;

  Recording recording_ = Recording::kCalls;
  std::vector<calls::Event> events_;
};

/// While one lives, the log records so much; then again as before.
class Record {
 public:
  Record(CallLog& log, CallLog::Recording recording) : log_(log), outer_(log.recording_) { log.recording_ = recording; }
  ~Record() { log_.recording_ = outer_; }
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;

 private:
  CallLog& log_;
  const CallLog::Recording outer_;
};

}  // namespace softcard

#endif
