#ifndef SCENARIO_STRUCTURE_H
#define SCENARIO_STRUCTURE_H

#include <cstdint>
#include <string>
#include <vector>

#include "scenario/Fields.h"
#include "scenario/Form.h"
#include "scenario/Tokens.h"
#include "softcard/CardDescription.h"

namespace scenario {

/// "for I in 1..300".
struct Loop {
  std::string counter;
  std::int64_t first;
  std::int64_t last;
};

/// Both throw SyntaxError.
Loop ReadLoop(const std::vector<Token>& words, const Form& form);
softcard::CardDescription ReadCard(const Fields& fields);

}  // namespace scenario

#endif
