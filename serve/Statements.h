#ifndef SERVE_STATEMENTS_H
#define SERVE_STATEMENTS_H

#include <functional>
#include <map>
#include <vector>

#include "scenario/Language.h"
#include "softcard/tables/Row.h"

namespace serve {

/// The VLANs that travel without a tag, by port.
using Natives = std::map<int, unsigned>;

/// What statements ask of a card that lives, and tell it.
struct Living {
  Natives natives{};
  std::function<std::vector<softcard::Row>()> interfaces{};  ///< of its ports; empty for a card that has none
};

/// native, no-native, show interfaces. `living` lives as long as the language.
void AddStatements(scenario::Language& language, Living& living);

}  // namespace serve

#endif
