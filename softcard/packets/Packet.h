#ifndef SOFTCARD_PACKETS_PACKET_H
#define SOFTCARD_PACKETS_PACKET_H

#include <cstdint>
#include <optional>

#include "softcard/packets/Frame.h"

namespace softcard {

/// What a frame carries, as far as the card has to know it. The bytes are somebody else's.
struct Packet {
  enum class Kind {
    kIpv4,
    kIpv6,
    kLabelled,  ///< begins with a label stack
    kEthernet,  ///< a whole frame, for a virtual circuit
    kOpaque,    ///< lies below a label: only who pops the label has to know what it is
  };

  Kind kind;
  View bytes;
  unsigned ttl = 255;  ///< the outermost header's; 255 for what has none
  unsigned exp = 0;    ///< its priority: IP precedence, traffic class, EXP or PCP
};

/// Each gives nothing for bytes that are no whole packet of this kind: headers cut off, lengths that lie, a wrong
/// checksum, a label stack without a bottom. What an Ethernet frame was filled up with behind an IP packet is cut off.
std::optional<Packet> ParseIpv4(View bytes);
std::optional<Packet> ParseIpv6(View bytes);
/// Of the version that the packet tells itself.
std::optional<Packet> ParseIp(View bytes);
std::optional<Packet> ParseLabelled(View bytes);
std::optional<Packet> ParseEthernet(View bytes);

/// Gives an IP packet's or a label's outermost header another TTL, and the checksum that goes with it.
void SetTtl(Packet::Kind kind, unsigned ttl, unsigned char* header);

/// The same for all packets of a flow, on every host: IP packets with the same addresses and the same protocol or flow
/// label, whether they are fragments or not; packets with the same labels; Ethernet frames with the same addresses.
uint32_t FlowHash(const Packet& packet);

}  // namespace softcard

#endif
