#ifndef SCENARIO_EXPECTATIONS_H
#define SCENARIO_EXPECTATIONS_H

#include <optional>
#include <string>
#include <vector>

#include "scenario/Record.h"
#include "scenario/Scenario.h"

namespace scenario {

/// Why an expectation does not hold, a line each: "expected: ...", "found: ...".
using Failure = std::vector<std::string>;

/// Nothing when the expectation holds for the last request or packet and the card as they are.
std::optional<Failure> Check(const Expectation& expectation, const Record& last);

}  // namespace scenario

#endif
