#ifndef DIAGNOSIS_MINIMISE_H
#define DIAGNOSIS_MINIMISE_H

#include <cstddef>
#include <functional>
#include <vector>

namespace diagnosis {

struct Minimised {
  std::vector<std::size_t> kept;  ///< in order
  std::size_t tries = 0;
  bool is_minimal = true;  ///< without any one of them it no longer shows; false: there were not tries enough to tell
};

/// Leaves out of 0 ... count - 1 what is not needed for `shows`, which holds for all of them: first halves, then ever
/// smaller parts, in the end single ones, until each that is left is needed (Zeller's ddmin). `shows` gives the same
/// answer to the same question and is asked `most_tries` times at most.
Minimised Minimise(std::size_t count, std::size_t most_tries,
                   const std::function<bool(const std::vector<std::size_t>&)>& shows);

}  // namespace diagnosis

#endif
