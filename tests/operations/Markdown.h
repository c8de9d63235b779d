#ifndef TESTS_OPERATIONS_MARKDOWN_H
#define TESTS_OPERATIONS_MARKDOWN_H

#include <string>
#include <vector>

#include "diagnosis/Attempt.h"

/// What was seen, as the cells of a table.
namespace operations {

using Lines = std::vector<std::string>;

/// The lines as they are, under each other; `none` where there are none.
std::string Cell(const Lines& lines, const char* none);

/// Log lines that report something.
Lines Errors(const diagnosis::Attempt& attempt);

/// The rows that went and the rows that came.
Lines Changes(const diagnosis::Rows& before, const diagnosis::Rows& after);

}  // namespace operations

#endif
