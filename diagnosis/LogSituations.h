#ifndef DIAGNOSIS_LOG_SITUATIONS_H
#define DIAGNOSIS_LOG_SITUATIONS_H

#include <string>
#include <vector>

#include "diagnosis/Attempt.h"

namespace diagnosis {

/// A request in a situation that makes a difference in what it logs.
struct LogSituation {
  std::string title;  ///< "InstallMplsUnprotectedOutgoingEncapsulation, forward"
  Situation situation;
  bool is_variant = false;  ///< another one tells already what each class of status does
};

/// The operations in all of their ways, on every kind of port, from every kind of tunnel to every other, and what the
/// module itself turns down.
std::vector<LogSituation> LogSituations();

}  // namespace diagnosis

#endif
