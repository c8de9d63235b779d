#ifndef SCENARIO_PACKET_WAY_H
#define SCENARIO_PACKET_WAY_H

#include <string>
#include <vector>

#include "softcard/Card.h"

namespace scenario {

/// An IPv4 packet that has been routed to a destination.
struct RoutedPacket {
  unsigned id = 0;
  unsigned ttl = 64;
  unsigned tos = 0;
  unsigned size = 20;  ///< in bytes, with the header
};

/// What becomes of a packet, step by step, in the end the frame that leaves the card, in hexadecimal: the two
/// addresses, the VLAN tag, the Ethernet type, each label and the rest.
std::vector<std::string> PacketWay(const softcard::Card& card, const RoutedPacket& packet);

}  // namespace scenario

#endif
