#ifndef DIAGNOSIS_LOG_CAUSES_H
#define DIAGNOSIS_LOG_CAUSES_H

#include <vector>

#include "diagnosis/LogDiagnosis.h"

namespace diagnosis {

/// A run that may be a request of a log: its lines from the `from`-th on are those of the request.
struct LoggedWay {
  const LoggedRun* run;
  const std::vector<LogValues>* lines;  ///< what fills the holes of the request's lines
  std::size_t from;
};

/// What happened in these runs, told of the request. Runs that differ in nothing that can be told are one cause.
std::vector<LogCause> CausesOf(const std::vector<LoggedWay>& ways);

}  // namespace diagnosis

#endif
