#ifndef SCENARIO_FAILURE_H
#define SCENARIO_FAILURE_H

#include <optional>
#include <string>
#include <vector>

#include "scenario/Step.h"

/// What expectations say that do not hold. Nothing: they hold.
namespace scenario {

using Lines = std::vector<std::string>;

/// "expected: ...", "found: ..." unless it holds.
std::optional<Failure> Unless(bool holds, const std::string& expected, const Lines& found);

/// The difference unless there is a pattern for every line, in its place.
std::optional<Failure> UnlessEqual(const Lines& expected, const Lines& found);

/// Expects a line that fits, or none that does. `what` says what the lines are: "log line".
std::optional<Failure> Among(const Lines& found, const std::string& pattern, const std::string& what, bool negated);

}  // namespace scenario

#endif
