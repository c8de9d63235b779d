#include "scenario/Failure.h"

#include <algorithm>
#include <iterator>

#include "scenario/Difference.h"
#include "scenario/Suggestion.h"

namespace scenario {

std::optional<Failure> Unless(bool holds, const std::string& expected, const Lines& found) {
  if (holds) return std::nullopt;
  Failure failure = {"expected: " + expected, "found:    " + (found.empty() ? "nothing" : found[0])};
  for (std::size_t i = 1; i < found.size(); ++i) failure.push_back("          " + found[i]);
  return failure;
}

std::optional<Failure> UnlessEqual(const Lines& expected, const Lines& found) {
  if (Match(expected, found)) return std::nullopt;
  Failure failure = {"- expected, + found:"};
  for (const std::string& line : Difference(expected, found)) failure.push_back(line);
  return failure;
}

std::optional<Failure> Among(const Lines& found, const std::string& pattern, const std::string& what, bool negated) {
  Lines fitting;
  std::copy_if(found.begin(), found.end(), std::back_inserter(fitting),
               [&](const std::string& line) { return Fits(pattern, line); });
  const std::string that = pattern == "*" ? what : what + " " + Quoted(pattern);
  return negated ? Unless(fitting.empty(), "no " + that, fitting) : Unless(!fitting.empty(), that, found);
}

}  // namespace scenario
