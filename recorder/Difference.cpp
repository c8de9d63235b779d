#include "recorder/Difference.h"

#include <algorithm>
#include <cstddef>

namespace recorder {
namespace {

using Lines = std::vector<std::string>;

constexpr std::size_t kContext = 2;
// Beyond so many pairs of lines, which no request of the module comes near, all of them differ.
constexpr std::size_t kMostPairs = 4000000;

/// The longest common subsequence's length of what begins at each pair of lines.
std::vector<std::vector<unsigned>> CommonLengths(const Lines& left, const Lines& right) {
  std::vector<std::vector<unsigned>> lengths(left.size() + 1, std::vector<unsigned>(right.size() + 1, 0));
  for (std::size_t l = left.size(); l-- > 0;) {
    for (std::size_t r = right.size(); r-- > 0;) {
      lengths[l][r] = left[l] == right[r] ? lengths[l + 1][r + 1] + 1 : std::max(lengths[l + 1][r], lengths[l][r + 1]);
    }
  }
  return lengths;
}

/// All lines, each behind its two characters.
Lines Merged(const Lines& recorded, const Lines& now) {
  Lines merged;
  std::size_t r = 0;
  std::size_t n = 0;
  if (recorded.size() * now.size() <= kMostPairs) {
    const auto lengths = CommonLengths(recorded, now);
    while (r < recorded.size() && n < now.size()) {
      if (recorded[r] == now[n]) {
        merged.push_back("  " + recorded[r++]);
        ++n;
      } else if (lengths[r + 1][n] >= lengths[r][n + 1]) {
        merged.push_back("- " + recorded[r++]);
      } else {
        merged.push_back("+ " + now[n++]);
      }
    }
  }
  while (r < recorded.size()) merged.push_back("- " + recorded[r++]);
  while (n < now.size()) merged.push_back("+ " + now[n++]);
  return merged;
}

}  // namespace

Lines Difference(const Lines& recorded, const Lines& now) {
  if (recorded == now) return {};
  const Lines merged = Merged(recorded, now);
  std::vector<bool> told(merged.size(), false);
  for (std::size_t i = 0; i < merged.size(); ++i) {
    if (merged[i][0] == ' ') continue;
    const std::size_t begin = i - std::min(i, kContext);
    const std::size_t end = std::min(i + kContext + 1, merged.size());
    std::fill(told.begin() + static_cast<std::ptrdiff_t>(begin), told.begin() + static_cast<std::ptrdiff_t>(end), true);
  }
  Lines difference;
  for (std::size_t i = 0; i < merged.size(); ++i) {
    if (told[i]) {
      difference.push_back(merged[i]);
    } else if (i == 0 || told[i - 1]) {
      difference.emplace_back("  ...");
    }
  }
  return difference;
}

}  // namespace recorder
