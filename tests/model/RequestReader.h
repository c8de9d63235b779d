#ifndef TESTS_MODEL_REQUEST_READER_H
#define TESTS_MODEL_REQUEST_READER_H

#include <string>

#include "tests/model/Request.h"

namespace model {

/// The request, or the registration of a client that makes no calls, that this line of a scenario asks for. Throws
/// std::invalid_argument for any other line.
Request ReadRequest(const std::string& line);

}  // namespace model

#endif
