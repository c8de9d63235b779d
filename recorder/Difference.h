#ifndef RECORDER_DIFFERENCE_H
#define RECORDER_DIFFERENCE_H

#include <string>
#include <vector>

namespace recorder {

/// What it takes to make `now` of `recorded`: the lines of both in order, each behind "- " when it was recorded only,
/// "+ " when it is there now only, and two blanks when it is in both. Of the latter only those next to a difference are
/// told; "  ..." stands for the others. Empty when there is no difference.
std::vector<std::string> Difference(const std::vector<std::string>& recorded, const std::vector<std::string>& now);

}  // namespace recorder

#endif
