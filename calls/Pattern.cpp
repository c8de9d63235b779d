#include "calls/Pattern.h"

#include <cstddef>

namespace calls {
namespace {

bool IsEscape(std::string_view pattern, std::size_t at) {
  return pattern[at] == '\\' && at + 1 < pattern.size() && (pattern[at + 1] == '*' || pattern[at + 1] == '\\');
}

}  // namespace

bool Matches(std::string_view pattern, std::string_view text) {
  constexpr std::size_t kNone = std::string_view::npos;
  std::size_t star = kNone;
  std::size_t resume = 0;  // where the text that the last star stands for ends, as far as is known
  std::size_t p = 0;
  for (std::size_t t = 0; t < text.size();) {
    const bool escaped = p < pattern.size() && IsEscape(pattern, p);
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      resume = t;
    } else if (p < pattern.size() && pattern[p + (escaped ? 1 : 0)] == text[t]) {
      p += escaped ? 2 : 1;
      ++t;
    } else if (star != kNone) {
      p = star + 1;
      t = ++resume;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == kNone;
}

}  // namespace calls
