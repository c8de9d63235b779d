#ifndef SCENARIO_DIFFERENCE_H
#define SCENARIO_DIFFERENCE_H

#include <string>
#include <vector>

namespace scenario {

/// Whether a line is what the pattern says, with the mark of an injected result or without.
bool Fits(const std::string& pattern, const std::string& line);

/// Whether every pattern matches the line at its place and there are no other lines.
bool Match(const std::vector<std::string>& patterns, const std::vector<std::string>& lines);

/// What has to go and to come so that the lines are those expected: "- expected", "+ found", "  in both".
std::vector<std::string> Difference(const std::vector<std::string>& patterns, const std::vector<std::string>& lines);

}  // namespace scenario

#endif
