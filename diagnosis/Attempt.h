#ifndef DIAGNOSIS_ATTEMPT_H
#define DIAGNOSIS_ATTEMPT_H

#include <string>
#include <vector>

#include "scenario/Language.h"
#include "scenario/Run.h"
#include "scenario/Trace.h"
#include "softcard/Card.h"

namespace diagnosis {

using Rows = std::vector<softcard::Row>;

/// A request and what comes before it, in lines of the scenario language.
struct Situation {
  std::vector<std::string> before;
  std::string request;
};

/// What a request did.
struct Attempt {
  scenario::Trace trace;  ///< its calls, log lines and result
  Rows before;            ///< of all tables that are not given with the card
  Rows after;
};

/// The rows of all tables that are not given with the card.
Rows AllRows(const softcard::Card& card);

/// Empties the card, does what comes before and makes the request. The module has started already. The watcher, if
/// there is one, is told each step. Throws std::invalid_argument when the lines are no scenario.
Attempt Try(const scenario::Language& language, softcard::Card& card, const Situation& situation,
            scenario::Observer* watcher = nullptr, const scenario::Options& options = {});

/// The rows of `rows` that are not in `others`, in their order.
Rows Without(const Rows& rows, const Rows& others);

}  // namespace diagnosis

#endif
