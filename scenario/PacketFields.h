#ifndef SCENARIO_PACKET_FIELDS_H
#define SCENARIO_PACKET_FIELDS_H

#include "scenario/Fields.h"
#include "softcard/packets/Way.h"

namespace scenario {

/// The fields that packets are made of.
constexpr char kPacketFields[] =
    "[src=IP] [dst=IP] [ttl=N] [tos=N] [size=BYTES] [labels=LABEL,...] [payload=HEX] [frame=HEX]";

struct CarriedPacket {
  softcard::Carried carried = softcard::Carried::kIp;
  softcard::Bytes bytes{};
};

/// The packet that the fields describe: labels, the outermost first, and below them an IP packet or a whole Ethernet
/// frame. Labels have the packet's TTL and priority. Throws SyntaxError.
CarriedPacket ToPacket(const Fields& fields);

/// The frame of hex=, or an Ethernet header of dmac=, smac= and vlan= around the packet. Throws SyntaxError.
softcard::Bytes ToFrame(const Fields& fields);

}  // namespace scenario

#endif
