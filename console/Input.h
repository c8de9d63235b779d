#ifndef CONSOLE_INPUT_H
#define CONSOLE_INPUT_H

#include <optional>
#include <string>
#include <vector>

#include "scenario/Scenario.h"

namespace console {

/// The scenario in a file, or in standard input for "-". Nothing when it is unusable, with the reasons on standard
/// error.
std::optional<scenario::Scenario> Load(const scenario::Language& language, const std::string& path,
                                       const scenario::Counters& definitions = {});

/// Leaves out the scenario's own lines behind this one, of which 0 is none.
void CutAfter(unsigned line, scenario::Scenario& scenario);

/// The scenarios that these paths name: of a directory all *.scn files in it and below, in the order of their names.
/// Nothing, and a message on standard error, when it has none.
std::optional<std::vector<std::string>> Scenarios(const std::vector<std::string>& paths);

}  // namespace console

#endif
