#ifndef CONSOLE_PACKET_WAY_H
#define CONSOLE_PACKET_WAY_H

#include <string>
#include <vector>

#include "Scenario.h"

namespace console {

/// What becomes of a packet, step by step, in the end the frame that leaves the card, in hexadecimal: the two
/// addresses, the VLAN tag, the Ethernet type, each label and the rest.
std::vector<std::string> PacketWay(const Send& send);

}  // namespace console

#endif
