#include "scenario/Difference.h"

#include <algorithm>

namespace scenario {

bool Matches(std::string_view pattern, std::string_view text) {
  std::size_t star = std::string_view::npos;
  std::size_t resume = 0;  // where the text that the last star stands for ends, as far as is known
  std::size_t p = 0;
  for (std::size_t t = 0; t < text.size();) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      resume = t;
    } else if (p < pattern.size() && pattern[p] == text[t]) {
      ++p;
      ++t;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      t = ++resume;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

bool Match(const std::vector<std::string>& patterns, const std::vector<std::string>& lines) {
  return std::equal(patterns.begin(), patterns.end(), lines.begin(), lines.end(), Matches);
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
          Matches(patterns[i], lines[j]) ? common[i + 1][j + 1] + 1 : std::max(common[i + 1][j], common[i][j + 1]);
    }
  }
  std::vector<std::string> difference;
  for (std::size_t i = 0, j = 0; i < rows || j < columns;) {
    if (i < rows && j < columns && Matches(patterns[i], lines[j])) {
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
