#ifndef RECORDER_SCENARIO_H
#define RECORDER_SCENARIO_H

#include <string>

#include "calls/Value.h"
#include "recorder/Reader.h"

namespace recorder {

/// The scenario that makes a recording's requests, with a fault for each call that was refused, and expects what was
/// recorded of them: calls, log lines, notifications and results. `names` are the lim ids' in expected calls. Ids of
/// interfaces and egress objects, which are the card's to choose, and their texts may be any. Throws BadRecording, also
/// for what no scenario can tell.
std::string ToScenario(Reader* reader, const calls::LimIdNames& names);

}  // namespace recorder

#endif
