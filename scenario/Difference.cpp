#include "scenario/Difference.h"

#include <algorithm>

#include "calls/Event.h"
#include "calls/Pattern.h"

namespace scenario {

bool Fits(const std::string& pattern, const std::string& line) {
  const std::string_view unmarked = calls::Unmarked(line);
  return calls::Matches(pattern, line) || (unmarked.size() < line.size() && calls::Matches(pattern, unmarked));
}

bool Match(const std::vector<std::string>& patterns, const std::vector<std::string>& lines) {
  return std::equal(patterns.begin(), patterns.end(), lines.begin(), lines.end(), Fits);
}

std::vector<std::string> Difference(const std::vector<std::string>& patterns, const std::vector<std::string>& lines) {
  const std::size_t rows = patterns.size();
  const std::size_t columns = lines.size();
  // common[i][j]: the most lines that the rest of the patterns from i and of the lines from j have in common. Beyond a
  // size that nobody reads the two are shown one after the other.
  constexpr std::size_t kMaxCells = 4'000'000;
  const bool aligned = (rows + 1) * (columns + 1) <= kMaxCells;
  std::vector<std::vector<unsigned>> common(aligned ? rows + 1 : 0, std::vector<unsigned>(columns + 1));
  for (std::size_t i = aligned ? rows : 0; i-- > 0;) {
    for (std::size_t j = columns; j-- > 0;) {
      common[i][j] =
          Fits(patterns[i], lines[j]) ? common[i + 1][j + 1] + 1 : std::max(common[i + 1][j], common[i][j + 1]);
    }
  }
  std::vector<std::string> difference;
  for (std::size_t i = 0, j = 0; i < rows || j < columns;) {
    if (i < rows && j < columns && Fits(patterns[i], lines[j])) {
      difference.push_back("  " + lines[j++]);
      ++i;
    } else if (j == columns || (i < rows && (!aligned || common[i + 1][j] >= common[i][j + 1]))) {
      difference.push_back("- " + patterns[i++]);
    } else {
      difference.push_back("+ " + lines[j++]);
    }
  }
  return difference;
}

}  // namespace scenario
