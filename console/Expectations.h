#ifndef CONSOLE_EXPECTATIONS_H
#define CONSOLE_EXPECTATIONS_H

#include <optional>
#include <string>
#include <vector>

#include "Record.h"
#include "Scenario.h"

namespace console {

/// Why an expectation does not hold, a line each: "expected: ...", "found: ...".
using Failure = std::vector<std::string>;

/// Nothing when the expectation holds for the last request or packet and the card as they are.
std::optional<Failure> Check(const Expectation& expectation, const Record& last);

}  // namespace console

#endif
