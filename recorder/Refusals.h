#ifndef RECORDER_REFUSALS_H
#define RECORDER_REFUSALS_H

#include <vector>

#include "recorder/Reader.h"

namespace recorder {

/// A recorded call that did not go well.
struct Refusal {
  std::size_t line;
  const calls::Function* function;
  unsigned long nth;  ///< call of the function in its request, from 1
  int result;         ///< 0 for a lookup that found nothing
};

/// Those of a request, in a client's callback too: what a card has to be told to refuse so that it does as recorded.
/// Throws BadRecording for a call that threw, which no card can be told to do.
std::vector<Refusal> Refusals(const Step& step);

}  // namespace recorder

#endif
