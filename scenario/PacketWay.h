#ifndef SCENARIO_PACKET_WAY_H
#define SCENARIO_PACKET_WAY_H

#include <string>
#include <vector>

#include "scenario/Scenario.h"

namespace scenario {

/// What becomes of a packet, step by step, in the end the frame that leaves the card, in hexadecimal: the two
/// addresses, the VLAN tag, the Ethernet type, each label and the rest.
std::vector<std::string> PacketWay(const Send& send);

}  // namespace scenario

#endif
