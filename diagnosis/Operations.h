#ifndef DIAGNOSIS_OPERATIONS_H
#define DIAGNOSIS_OPERATIONS_H

#include <vector>

#include "diagnosis/Attempt.h"

namespace diagnosis {

/// An operation of the module in one of its ways.
struct Operation {
  const char* title;
  const char* explanation;  ///< may be empty
  Situation situation;      ///< what it starts from, and the request
};

/// All of them, in the order in which they are told of.
std::vector<Operation> Operations();

}  // namespace diagnosis

#endif
