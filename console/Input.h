#ifndef CONSOLE_INPUT_H
#define CONSOLE_INPUT_H

#include <optional>
#include <string>

#include "scenario/Scenario.h"

namespace console {

/// The scenario in a file, or in standard input for "-". Nothing when it is unusable, with the reasons on standard
/// error.
std::optional<scenario::Scenario> Load(const scenario::Language& language, const std::string& path);

}  // namespace console

#endif
