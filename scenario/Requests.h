#ifndef SCENARIO_REQUESTS_H
#define SCENARIO_REQUESTS_H

#include <array>
#include <optional>
#include <vector>

#include "HalEncapsulationTypes.h"
#include "scenario/Fields.h"
#include "softcard/CardDescription.h"
#include "softcard/LimId.h"

namespace scenario {

/// The arguments of a call of the module's interface. What a request does not take stays at its default.
struct RequestArguments {
  unsigned id = 0;  ///< destination or VRF
  limid_t limid{};
  unsigned vrf = 0;
  unsigned mtu = 0;
  std::optional<std::array<unsigned char, 6>> mac;  ///< nothing: a null pointer
  std::vector<en_HalVlanCapabilities> vlan_capabilities;
  unsigned vlan_destination_id = 0;
  std::vector<ActionFlags> actions;
  std::vector<unsigned> labels;
  std::vector<en_HalMplsCapabilities> mpls_capabilities;
  ActionFlags action = HAL_ACTION_NONE;
};

/// Throws SyntaxError.
RequestArguments ReadRequest(const Fields& fields, const softcard::CardDescription& card);

}  // namespace scenario

#endif
