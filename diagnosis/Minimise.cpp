#include "diagnosis/Minimise.h"

#include <algorithm>
#include <numeric>

namespace diagnosis {
namespace {

using Kept = std::vector<std::size_t>;

Kept Without(const Kept& kept, std::size_t begin, std::size_t end) {
  Kept rest(kept.begin(), kept.begin() + static_cast<std::ptrdiff_t>(begin));
  rest.insert(rest.end(), kept.begin() + static_cast<std::ptrdiff_t>(end), kept.end());
  return rest;
}

}  // namespace

Minimised Minimise(std::size_t count, std::size_t most_tries, const std::function<bool(const Kept&)>& shows) {
  Minimised result;
  result.kept.resize(count);
  std::iota(result.kept.begin(), result.kept.end(), 0);
  for (std::size_t part = count; part > 0;) {
    bool removed = false;
    // From the end: what comes later needs what comes earlier.
    for (std::size_t end = result.kept.size(); end > 0;) {
      if (result.tries == most_tries) {
        result.is_minimal = false;
        return result;
      }
      const std::size_t begin = end - std::min(part, end);
      Kept rest = Without(result.kept, begin, end);
      ++result.tries;
      if (shows(rest)) {
        result.kept = std::move(rest);
        removed = true;
      }
      end = begin;
    }
    // What was needed may no longer be when something else has gone.
    if (part > 1 || !removed) part /= 2;
  }
  return result;
}

}  // namespace diagnosis
