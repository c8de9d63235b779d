#ifndef TESTS_OPERATIONS_SEQUENCES_H
#define TESTS_OPERATIONS_SEQUENCES_H

#include <ostream>

#include "scenario/Language.h"

namespace operations {

/// The chapter on requests that succeed, or fail, otherwise than one expects from each of them alone.
void DescribeSequences(const scenario::Language& language, std::ostream& out);

}  // namespace operations

#endif
