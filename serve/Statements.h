#ifndef SERVE_STATEMENTS_H
#define SERVE_STATEMENTS_H

#include <functional>
#include <map>
#include <vector>

#include "router/Router.h"
#include "scenario/Language.h"
#include "softcard/tables/Row.h"

namespace serve {

/// The VLANs that travel without a tag, by port.
using Natives = std::map<int, unsigned>;

/// What statements ask of a card that lives, and tell it.
struct Living {
  Natives natives{};
  std::function<std::vector<softcard::Row>()> interfaces{};     ///< of its ports; empty for a card that has none
  std::function<std::vector<softcard::Row>()> control_plane{};  ///< the same of a card that nobody tells routes
  router::Router* router = nullptr;                             ///< of a card that somebody may tell routes
  bool in_statement = false;                                    ///< that asks something of the router
};

/// native, no-native, show interfaces. `living` lives as long as the language.
void AddStatements(scenario::Language& language, Living& living);
/// interface, no-interface, vrf-device, show nexthops, show neighbours, show unresolved, show control-plane; the same.
void AddRouterStatements(scenario::Language& language, Living& living);

}  // namespace serve

#endif
